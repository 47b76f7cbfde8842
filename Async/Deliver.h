// The main-thread rule: how a completion of the kit is called.
//
// Threading: any; the completion runs on the main thread.
#pragma once

#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>

#include "Platform/Platform.h"

namespace hlv {

/// How a delivery reaches its completion: inside the delivering call, or in a posted block.
enum class Delivery { direct, posted };

/// Runs `block` now on the main thread, and otherwise from the main queue.
inline void runOnMainThread(std::function<void(Delivery)> block) {
  const auto platform = Platform::current();
  if (platform->isMainThread()) return block(Delivery::direct);
  platform->mainQueue()->async([block = std::move(block)] { block(Delivery::posted); });
}

/// Delivers results that are built at delivery time. On the main thread the completion is called
/// now, and otherwise from the main queue; an empty completion is skipped and builds nothing.
///
/// `build(Delivery)` returns a tuple of the completion's arguments. It runs right before the
/// completion, on the main thread, and learns which way it came: errors carry the name of the
/// function that builds them.
template <class... Results>
void deliverBuilt(std::function<void(Results...)> completion,
                  std::type_identity_t<std::function<std::tuple<Results...>(Delivery)>> build) {
  if (!completion) return;
  runOnMainThread([completion = std::move(completion), build = std::move(build)](Delivery way) {
    std::apply(completion, build(way));
  });
}

/// Delivers results that exist already, by the same rule. On the main thread it allocates nothing.
template <class... Results>
void deliver(std::function<void(Results...)> completion, std::type_identity_t<Results>... results) {
  if (!completion) return;
  const auto platform = Platform::current();
  if (platform->isMainThread()) return completion(std::move(results)...);
  platform->mainQueue()->async(
      [completion = std::move(completion), ... results = std::move(results)]() mutable {
        completion(std::move(results)...);
      });
}

}  // namespace hlv
