// Callbacks of a service that wait until the test answers them.
//
// Threading: one thread.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <stdexcept>
#include <type_traits>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"

namespace hlv::testing {

/// What a host and a provider are asked for. The lists are apart by their use case.
enum class Service {
  createToken,
  addInstrument,
  privateList,
  businessList,
  defaultList,
  removeInstrument,
  updateGuest,
  addCard,
  deleteCard,
  updateCard,
  fetchCards
};

/// Which service a call is to, and whom it is for, as far as it says so. Valid inside the call.
struct CallOf {
  Service service;
  const std::shared_ptr<HLVSDKGuest>* guest = nullptr;
  /// An address, or a token.
  const NullableString* user = nullptr;
};

template <class Completion>
class Held;
template <class... Results>
class Held<std::function<void(Results...)>> {
 public:
  using Callback = std::function<void(Results...)>;

  /// When set, calls are answered with it inside the call and never held.
  std::function<void(Callback, const CallOf&)> answerInside;

  void hold(Callback callback, const CallOf& of) {
    if (answerInside) return answerInside(std::move(callback), of);
    callbacks_.push_back(std::move(callback));
  }
  std::size_t count() const { return callbacks_.size(); }
  /// Frees the callbacks; they will never be answered.
  void drop() { callbacks_.clear(); }

  /// Takes the oldest callback, so that the test can call it as often as it likes.
  Callback take() {
    if (callbacks_.empty()) throw std::logic_error("no call waits for this answer");
    Callback callback = std::move(callbacks_.front());
    callbacks_.pop_front();
    return callback;
  }
  /// Answers the oldest call.
  void answer(std::type_identity_t<Results>... results) { take()(std::move(results)...); }

 private:
  std::deque<Callback> callbacks_;
};

}  // namespace hlv::testing
