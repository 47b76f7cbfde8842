// The card brands that the sandbox knows.
//
// Threading: constant data; any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace hlv::sandbox {

struct CardBrand {
  /// As both services spell it.
  std::string_view name;
  /// Prefixes and ranges of prefixes, e.g. "51-55;2720".
  std::string_view ranges;
  /// Bit n is set when a number may have n digits.
  std::uint32_t lengths = 0;
  std::uint32_t securityCodeLength = 3;
  bool hasLuhn = true;

  bool allowsLength(std::size_t length) const {
    return length < 32 && (lengths >> length & 1U) != 0;
  }
};

/// How many digits decide.
inline constexpr std::size_t longestPrefix = 8;

/// The brand whose longest prefix begins `digits`; null when there is none.
const CardBrand* findCardBrand(std::string_view digits);

}  // namespace hlv::sandbox
