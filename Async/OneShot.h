// A callback that a service may call once.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace hlv {

/// A callback until it is answered. It lies in the object itself and is reached through two plain
/// functions, so that one class serves every callback that takes the same results.
template <class... Results>
class PendingCallback {
 public:
  /// Takes `callback` over.
  template <class Callback>
  explicit PendingCallback(Callback& callback) : run_(&runAs<Callback>), free_(&freeAs<Callback>) {
    static_assert(sizeof(Callback) <= sizeof(place_));
    new (place_) Callback(std::move(callback));
  }
  PendingCallback(const PendingCallback&) = delete;
  PendingCallback& operator=(const PendingCallback&) = delete;
  ~PendingCallback() {
    if (!answered_.test_and_set()) free_(place_);
  }

  void answer(Results&... results) {
    if (!answered_.test_and_set()) run_(place_, results...);
  }

 private:
  template <class Callback>
  static void runAs(void* place, Results&... results) {
    Callback answered = std::move(*static_cast<Callback*>(place));
    freeAs<Callback>(place);
    answered(std::move(results)...);
  }
  template <class Callback>
  static void freeAs(void* place) {
    static_cast<Callback*>(place)->~Callback();
  }

  std::atomic_flag answered_;
  void (*const run_)(void*, Results&...);
  void (*const free_)(void*);
  /// Holds the largest callback of the kit.
  alignas(std::max_align_t) std::byte place_[160];
};

/// What a service gets to hold: copies share the one answer.
template <class... Results>
struct OneShot {
  std::shared_ptr<PendingCallback<Results...>> pending;
  void operator()(Results... results) const { pending->answer(results...); }
};

template <class Callback, class... Parameters>
auto oneShotAs(Callback& callback, const std::function<void(Parameters...)>*) {
  using Pending = PendingCallback<std::decay_t<Parameters>...>;
  return OneShot<std::decay_t<Parameters>...>{std::make_shared<Pending>(callback)};
}

/// Wraps what the kit hands to a service as a callback. The first answer runs `callback`; a second
/// one, from whatever thread, does nothing. So an operation reports once whatever the service does,
/// and a service that keeps a callback it has answered keeps nothing of the kit's or the caller's
/// alive with it.
template <class Callback>
auto oneShot(Callback callback) {
  using Shape = decltype(std::function(std::declval<Callback>()));
  return oneShotAs(callback, static_cast<const Shape*>(nullptr));
}

}  // namespace hlv
