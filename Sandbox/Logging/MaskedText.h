// Keeps card numbers out of every text that leaves the sandbox.
//
// Threading: pure function; any.
#pragma once

#include <string>
#include <string_view>

namespace hlv::sandbox {

/// The same text, in which all but the last four digits of anything that may be a card number are
/// asterisks: twelve digits or more, with any blanks and hyphens between them. Longer runs are
/// masked too, because two numbers side by side make one.
std::string maskedText(std::string_view text);

}  // namespace hlv::sandbox
