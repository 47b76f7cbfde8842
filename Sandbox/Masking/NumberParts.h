// What a character may be within a number that somebody wrote down.
//
// Threading: pure function; any.
#pragma once

namespace hlv::sandbox {

enum class NumberPart {
  /// A decimal digit of any script.
  digit,
  /// What people, programs and copied pages put between digits: blanks, dashes, dots, slashes,
  /// underscores, and what shows as nothing.
  gap,
  other
};

/// The same for what is not ASCII; what is no code point is neither a digit nor a gap.
NumberPart numberPartBeyondASCII(char32_t character);
/// What a digit of any script stands for.
int valueOfDigit(char32_t digit);

inline NumberPart numberPartOf(char32_t character) {
  if (character >= 0x80) return numberPartBeyondASCII(character);
  if (character >= '0' && character <= '9') return NumberPart::digit;
  const bool isGap = character == ' ' || (character >= '\t' && character <= '\r') ||
                     (character >= '-' && character <= '/') || character == '\\' ||
                     character == '_';
  return isGap ? NumberPart::gap : NumberPart::other;
}

}  // namespace hlv::sandbox
