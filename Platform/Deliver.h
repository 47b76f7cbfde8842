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

/// Delivers results that are built at delivery time. On the main thread the completion is called
/// now, and otherwise from the main queue; an empty completion is skipped and builds nothing.
///
/// `build(Delivery)` returns a tuple of the completion's arguments. It runs right before the
/// completion, on the main thread, and is told which way it came: errors carry the name of the
/// function that builds them.
template <class... Results, class Build>
void deliverBuilt(const std::function<void(Results...)>& completion, Build build) {
  if (!completion) return;
  const auto platform = Platform::current();
  if (platform->isMainThread()) {
    std::apply(completion, build(Delivery::direct));
    return;
  }
  platform->mainQueue()->async(
      [completion, build = std::move(build)] { std::apply(completion, build(Delivery::posted)); });
}

/// Delivers results that exist already, by the same rule.
template <class... Results>
void deliver(const std::function<void(Results...)>& completion,
             std::type_identity_t<Results>... results) {
  deliverBuilt(completion, [results = std::tuple<Results...>(std::move(results)...)](Delivery) {
    return results;
  });
}

}  // namespace hlv
