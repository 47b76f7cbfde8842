// Keeps card numbers out of every text that leaves the sandbox.
//
// Threading: pure functions; any.
#pragma once

#include <string>
#include <string_view>

namespace hlv::sandbox {

/// The same text, in which all but the last four digits of anything that may be a card number are
/// asterisks: twelve decimal digits or more, of any script, with any blanks, dashes, dots, slashes
/// and underscores between them. Colons, letters and commas end a number, which leaves times as
/// they are. Longer runs are masked too, because two numbers side by side make one.
///
/// Texts should be UTF-8. A byte that belongs to no character is taken for a gap, since it may be
/// a blank of another encoding; an overlong form counts as the character that it stands for.
[[nodiscard]] std::string maskedText(std::string_view text);

/// Whether anything in the text would be masked.
[[nodiscard]] bool holdsCardNumber(std::string_view text);

/// The same text with digits of any script as ASCII digits, gaps as blanks and everything else as
/// colons.
[[nodiscard]] std::string plainNumbers(std::string_view text);

}  // namespace hlv::sandbox
