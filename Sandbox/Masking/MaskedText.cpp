#include "Sandbox/Masking/MaskedText.h"

#include <unicode/uchar.h>
#include <unicode/uniset.h>

#include <cstddef>

namespace hlv::sandbox {
namespace {

/// What a character may be within a number that somebody wrote down.
enum class NumberPart {
  /// A decimal digit of any script.
  digit,
  /// What people, programs and copied pages put between digits: blanks, dashes, dots, slashes,
  /// underscores, and what shows as nothing.
  gap,
  other
};

const icu::UnicodeSet& gaps() {
  static const auto& set = *[] {
    UErrorCode error = U_ZERO_ERROR;
    // Of the other punctuation and symbols the dots, slashes, minus signs and enclosing keycap.
    const icu::UnicodeString pattern(
        u"[[:White_Space:][:Pd:][:Pc:][:Cf:][:Default_Ignorable_Code_Point:]"
        u"\u00B7\u0387\u06D4\u2022\u2024-\u2027\u2043\u2044\u20E3\u2212\u2215\u2216\u2219\u22C5"
        u"\u29F5\u29F8\u2E31\u2E33\u3002\u30FB\uFE52\uFF0E\uFF0F\uFF3C\uFF61\uFF65]");
    auto* made = new icu::UnicodeSet(pattern, error);
    made->freeze();
    return made;
  }();
  return set;
}

NumberPart numberPartOf(char32_t character) {
  // Most texts are ASCII, and need no look at the tables.
  if (character < 0x80) {
    if (character >= '0' && character <= '9') return NumberPart::digit;
    const bool isGap = character == ' ' || (character >= '\t' && character <= '\r') ||
                       (character >= '-' && character <= '/') || character == '\\' ||
                       character == '_';
    return isGap ? NumberPart::gap : NumberPart::other;
  }
  const auto point = static_cast<UChar32>(character);
  if (u_isdigit(point)) return NumberPart::digit;
  return gaps().contains(point) ? NumberPart::gap : NumberPart::other;
}

constexpr std::size_t shortestNumber = 12;
constexpr std::size_t visibleDigits = 4;

struct Symbol {
  std::size_t size;
  NumberPart part;
  char32_t character = 0;
};

unsigned byteAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

bool isContinuation(unsigned byte) { return (byte & 0xC0U) == 0x80; }

/// The symbol that does not begin with an ASCII character.
Symbol wideSymbolAt(std::string_view text, std::size_t at) {
  constexpr Symbol strayByte{1, NumberPart::gap};
  const auto lead = byteAt(text, at);
  if (isContinuation(lead) || lead >= 0xF8) return strayByte;
  const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (text.size() - at < size) return strayByte;
  char32_t character = lead & (0x7FU >> size);
  for (std::size_t next = at + 1; next < at + size; ++next) {
    if (!isContinuation(byteAt(text, next))) return strayByte;
    character = character << 6U | (byteAt(text, next) & 0x3FU);
  }
  return {size, numberPartOf(character), character};
}

Symbol symbolAt(std::string_view text, std::size_t at) {
  const auto byte = byteAt(text, at);
  return byte < 0x80 ? Symbol{1, numberPartOf(byte), byte} : wideSymbolAt(text, at);
}

/// Digits with nothing but gaps between them, from the first one to behind the last one.
struct Run {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t digits = 0;

  bool isNumber() const { return digits >= shortestNumber; }
};

/// The next run that is long enough to be a card number, or one that is not, at the end.
Run nextNumber(std::string_view text, std::size_t at) {
  Run run;
  while (at < text.size()) {
    const auto [size, part, character] = symbolAt(text, at);
    if (part == NumberPart::digit) {
      if (run.digits++ == 0) run.begin = at;
      run.end = at + size;
    } else if (part == NumberPart::other) {
      if (run.isNumber()) return run;
      run.digits = 0;
    }
    at += size;
  }
  return run;
}

void appendMasked(std::string& result, std::string_view number, std::size_t digits) {
  auto hidden = digits - visibleDigits;
  for (std::size_t at = 0; at < number.size();) {
    const auto [size, part, character] = symbolAt(number, at);
    if (part == NumberPart::digit && hidden > 0) {
      result += '*';
      --hidden;
    } else {
      result += number.substr(at, size);
    }
    at += size;
  }
}

}  // namespace

std::string maskedText(std::string_view text) {
  std::string result;
  std::size_t copied = 0;
  for (auto run = nextNumber(text, 0); run.isNumber(); run = nextNumber(text, copied)) {
    result += text.substr(copied, run.begin - copied);
    appendMasked(result, text.substr(run.begin, run.end - run.begin), run.digits);
    copied = run.end;
  }
  result += text.substr(copied);
  return result;
}

bool holdsCardNumber(std::string_view text) { return nextNumber(text, 0).isNumber(); }

std::string plainNumbers(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size();) {
    const auto [size, part, character] = symbolAt(text, at);
    plain += part == NumberPart::digit
                 ? static_cast<char>('0' + u_charDigitValue(static_cast<UChar32>(character)))
             : part == NumberPart::gap ? ' '
                                       : ':';
    at += size;
  }
  return plain;
}

}  // namespace hlv::sandbox
