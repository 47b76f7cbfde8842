// Messages to objects that may be null.
//
// Threading: the receiver runs on the calling thread.
#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace hlv {

/// Calls `method` on `receiver`. A null receiver does nothing and returns the zero of the result:
/// false, 0, a missing string, a missing list, a null object.
template <class Receiver, class Method, class... Arguments>
auto send(const std::shared_ptr<Receiver>& receiver, Method method, Arguments&&... arguments) {
  using Result = std::decay_t<std::invoke_result_t<Method, Receiver&, Arguments...>>;
  if (receiver)
    return Result(std::invoke(method, *receiver, std::forward<Arguments>(arguments)...));
  return Result();
}

}  // namespace hlv
