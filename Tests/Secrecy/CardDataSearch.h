// Looks for one card's number and security code in whatever was written.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace hlv::testing {

/// Finds the number, whole or in part, with or without gaps, and the security code as a number of
/// its own. Only the number's last four digits may stand. Threading: any, once it is made.
class CardDataSearch {
 public:
  /// `code` may be empty; it must not be the number's last four digits.
  CardDataSearch(std::string number, std::string code)
      : number_(std::move(number)), code_(std::move(code)) {}

  /// Where the first finding begins. What it is stays out of the messages of tests.
  std::optional<std::size_t> in(std::string_view text) const {
    for (std::size_t at = 0; at < text.size(); ++at) {
      if (!isDigit(text[at])) continue;
      // The system chooses the ports, and some are five digits of a card.
      if (text.substr(0, at).ends_with("127.0.0.1:")) {
        const auto end = std::min(text.find_first_not_of("0123456789", at), text.size());
        if (end - at <= 5) at = end;
        if (at == end) continue;
      }
      if (isNumberAt(text, at) || isCodeAt(text, at)) return at;
    }
    return std::nullopt;
  }

 private:
  /// As many digits as the mask leaves, and one.
  static constexpr std::size_t tooMany = 5;
  /// The same for a run with gaps: by chance the seconds of a time begin the number ("40.001"), and
  /// an expiry date continues its last four digits.
  static constexpr std::size_t tooManyAtItsBegin = 6, tooManyWithGaps = 8;

  static bool isDigit(char character) { return character >= '0' && character <= '9'; }
  static bool isGap(char character) {
    return character == ' ' || character == '_' || (character >= '-' && character <= '/');
  }

  /// How many digits of the number can be read at the beginning of the text, from one of them on.
  std::size_t digitsAt(std::string_view text, std::size_t first, bool overGaps) const {
    std::size_t count = 0;
    for (const char character : text) {
      if (overGaps && isGap(character)) continue;
      if (first + count == number_.size() || character != number_[first + count]) break;
      ++count;
    }
    return count;
  }

  /// Whether more digits of the number can be read from here on than may stand.
  bool isNumberAt(std::string_view text, std::size_t at) const {
    const bool standsFree = at == 0 || !isDigit(text[at - 1]);
    for (std::size_t first = 0; first + tooMany <= number_.size(); ++first) {
      const bool beginsNumber = first == 0 && standsFree;
      if (digitsAt(text.substr(at), first, false) >= tooMany ||
          digitsAt(text.substr(at), first, true) >=
              (beginsNumber ? tooManyAtItsBegin : tooManyWithGaps)) {
        return true;
      }
    }
    return false;
  }

  /// Whether the code stands here with no digit beside it, and is not the fraction of a number.
  bool isCodeAt(std::string_view text, std::size_t at) const {
    const auto end = at + code_.size();
    if (code_.empty() || end > text.size()) return false;
    if (at > 0 && isDigit(text[at - 1])) return false;
    if (at > 1 && text[at - 1] == '.' && isDigit(text[at - 2])) return false;
    if (end < text.size() && isDigit(text[end])) return false;
    return text.substr(at, code_.size()) == code_;
  }

  std::string number_, code_;
};

}  // namespace hlv::testing
