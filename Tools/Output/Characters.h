// Texts from elsewhere, for the terminal of a person.
//
// Threading: pure functions; any.
#pragma once

#include <string>
#include <string_view>

namespace hlv::tool {

/// The same text with what would control the terminal, change the direction of writing or is no
/// UTF-8 written as `\x1b` or `\u202e`.
std::string escaped(std::string_view text);

/// The same text in ASCII, for a locale that has nothing else: lines and marks become characters
/// that look like them, everything else a question mark. As many characters as before.
std::string inASCII(std::string_view text);

}  // namespace hlv::tool
