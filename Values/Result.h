// A value, or one plain sentence that says why there is none.
//
// Threading: a plain value; any thread.
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace hlv {

template <class T>
class [[nodiscard]] Result {
 public:
  Result(T value) : outcome_(std::in_place_index<0>, std::move(value)) {}
  static Result failure(std::string sentence) { return Result(Failure{std::move(sentence)}); }

  explicit operator bool() const { return outcome_.index() == 0; }
  /// Only where there is a value.
  T& operator*() { return std::get<0>(outcome_); }
  const T& operator*() const { return std::get<0>(outcome_); }
  T* operator->() { return &**this; }
  const T* operator->() const { return &**this; }
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
