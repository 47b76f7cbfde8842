// Hears a service once.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <utility>

namespace hlv {

/// Wraps what the kit hands to a service as a callback. The first answer runs `callback`; a second
/// one, from whatever thread, does nothing. So an operation reports once whatever the service does,
/// and a service that keeps a callback it has answered keeps nothing of the kit's or the caller's
/// alive with it.
template <class Callback>
auto answerOnce(Callback callback) {
  struct Pending {
    explicit Pending(Callback waiting) : callback(std::move(waiting)) {}
    std::atomic_flag answered;
    std::optional<Callback> callback;
  };
  return [pending = std::make_shared<Pending>(std::move(callback))](auto&&... results) {
    if (pending->answered.test_and_set()) return;
    Callback answered = std::move(*pending->callback);
    pending->callback.reset();
    answered(std::forward<decltype(results)>(results)...);
  };
}

}  // namespace hlv
