// A text that is there.
//
// Threading: plain values; any thread.
#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <utility>

namespace hlv {

/// Made of a literal or of a string. What may be a null pointer, such as `std::getenv` returns,
/// does not compile; give that to a `NullableString` first.
class Text : public std::string {
 public:
  template <std::size_t size>
  Text(const char (&text)[size]) : std::string(text) {}
  template <std::same_as<std::string> String>
  Text(String text) : std::string(std::move(text)) {}
};

}  // namespace hlv
