// A value, or one plain sentence that says why there is none.
//
// Threading: a plain value; any thread.
#pragma once

#include <string>
#include <type_traits>
#include <utility>
#include <variant>

#include "Values/Problem.h"

namespace hlv {

/// The value of what only has to be done.
struct Done {};

template <class T = Done>
class [[nodiscard]] Result {
 public:
  Result() requires std::is_same_v<T, Done> : Result(Done()) {}
  Result(T value) : outcome_(std::in_place_index<0>, std::move(value)) {}
  static Result failure(std::string sentence) { return Result(Failure{std::move(sentence)}); }

  explicit operator bool() const { return outcome_.index() == 0; }
  /// Only where there is a value.
  T& operator*() { return std::get<0>(outcome_); }
  const T& operator*() const { return std::get<0>(outcome_); }
  T* operator->() { return &**this; }
  const T* operator->() const { return &**this; }
  T valueOr(T otherwise) const { return *this ? **this : std::move(otherwise); }
  /// Throws `Problem` where there is none.
  T value() && {
    if (!*this) throw Problem(problem());
    return std::move(**this);
  }
  /// Empty where there is a value.
  std::string problem() const { return *this ? std::string() : std::get<1>(outcome_).sentence; }

 private:
  struct Failure {
    std::string sentence;
  };
  explicit Result(Failure failure) : outcome_(std::in_place_index<1>, std::move(failure)) {}

  std::variant<T, Failure> outcome_;
};

}  // namespace hlv
