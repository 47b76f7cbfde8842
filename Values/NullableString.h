// A string that may be missing, and the questions the kit asks of one.
//
// Threading: plain values; any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Values/Text.h"

namespace hlv {

/// Missing and empty are different things, and the kit's rules distinguish them. A null pointer,
/// such as `std::getenv` returns, is a missing string.
class NullableString : public std::optional<std::string> {
 public:
  NullableString() = default;
  NullableString(std::nullopt_t) {}
  NullableString(std::nullptr_t) {}
  NullableString(const char* text) {
    if (text) optional::emplace(text);
  }
  explicit NullableString(std::string_view text) : optional(std::string(text)) {}
  NullableString(std::string text) : optional(std::move(text)) {}
  NullableString(std::optional<std::string> text) : optional(std::move(text)) {}

  /// Makes it an empty text.
  std::string& emplace() { return optional::emplace(); }
  std::string value_or(Text otherwise) const& { return *this ? **this : std::move(otherwise); }
  std::string value_or(Text otherwise) && { return std::move(*this ? **this : otherwise); }

  // The base's comparisons take any two types; for two optional ones of different types they would
  // be ambiguous.
  friend bool operator==(const NullableString& one, const NullableString& other) {
    return one.base() == other.base();
  }
  friend bool operator==(const NullableString& one, const std::optional<std::string>& other) {
    return one.base() == other;
  }
  friend bool operator==(const NullableString& one, std::nullopt_t) { return !one; }
  friend bool operator==(const NullableString& one, const char* other) {
    return one == NullableString(other);
  }
  friend bool operator==(const NullableString& one, const std::string& other) {
    return one && *one == other;
  }

 private:
  const std::optional<std::string>& base() const { return *this; }
};

/// The number of bytes: zero exactly where there is no character. A missing string has none.
inline std::size_t length(const NullableString& string) { return string ? string->size() : 0; }

/// Exact, case-sensitive equality. A missing string equals nothing, not even another missing one.
inline bool isEqualToString(const NullableString& string, const NullableString& other) {
  return string && other && *string == *other;
}

/// Whether `string` ends with `suffix`. Every string ends with the empty one; a missing string ends
/// with nothing, and nothing ends with a missing one.
inline bool hasSuffix(const NullableString& string, const NullableString& suffix) {
  return string && suffix && string->ends_with(*suffix);
}

}  // namespace hlv
