// Words of the code as a person reads them.
//
// Threading: pure functions and constant data; any.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Values/Result.h"

namespace hlv {

/// The texts of a list with ", " between them.
template <class Texts>
std::string joined(const Texts& texts) {
  std::string line;
  for (const auto& text : texts) {
    if (!line.empty()) line += ", ";
    line += text;
  }
  return line;
}

/// What each value of an enumeration is called, in the order in which people read them.
template <class Value, std::size_t count>
struct Names {
  std::pair<Value, std::string_view> rows[count];

  /// The first one for a value that has none.
  constexpr std::string_view of(Value value) const {
    for (const auto& row : rows) {
      if (row.first == value) return row.second;
    }
    return rows[0].second;
  }
  /// Missing for a name that is none.
  constexpr std::optional<Value> find(std::string_view name) const {
    for (const auto& row : rows) {
      if (row.second == name) return row.first;
    }
    return std::nullopt;
  }
  /// The same with a sentence that says what is possible instead. `shown` is the name as the
  /// sentence repeats it.
  Result<Value> require(std::string_view name, const std::string& kind,
                        const std::string& shown) const {
    if (const auto value = find(name)) return *value;
    std::vector<std::string_view> possible;
    for (const auto& row : rows) possible.push_back(row.second);
    return Result<Value>::failure("There is no " + kind + " '" + shown +
                                  "'; possible are: " + joined(possible) + ".");
  }
  std::vector<Value> values() const {
    std::vector<Value> all;
    for (const auto& row : rows) all.push_back(row.first);
    return all;
  }
};

/// The names of values that have a `textOf`.
template <class Values>
std::vector<std::string> namesOf(const Values& values) {
  std::vector<std::string> names;
  for (const auto value : values) names.emplace_back(textOf(value));
  return names;
}

}  // namespace hlv
