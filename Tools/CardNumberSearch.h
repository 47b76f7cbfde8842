// Finds the card number that somebody typed as an argument.
//
// Threading: pure function; any.
#pragma once

#include <string_view>

namespace hlv::tool {

/// Whether digits of any script, with nothing but blanks, dashes, dots and slashes between them,
/// make a number that a card may have: by its length, its brand and its checksum. Other long
/// numbers, such as times, are none.
bool holdsValidCardNumber(std::string_view text);

}  // namespace hlv::tool
