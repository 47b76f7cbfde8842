// A string that may be missing, and the questions the kit asks of one.
//
// Threading: plain values; any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace hlv {

/// Missing and empty are different things, and the kit's rules tell them apart.
using NullableString = std::optional<std::string>;

/// The number of characters; a missing string has none.
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
