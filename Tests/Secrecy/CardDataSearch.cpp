#include "Tests/Secrecy/CardDataSearch.h"

#include <algorithm>

namespace hlv::testing {
namespace {

/// As many digits as the mask leaves, and one.
constexpr std::size_t tooMany = 5;
/// The same for a run with gaps: by chance the seconds of a time begin the number ("40.001"), and
/// an expiry date continues its last four digits.
constexpr std::size_t tooManyAtItsBegin = 6, tooManyWithGaps = 8;
/// The system chooses the ports, and some are five digits of a card.
constexpr std::string_view beforePort = "127.0.0.1:";

bool isDigit(char character) { return character >= '0' && character <= '9'; }
bool isGap(char character) {
  return character == ' ' || character == '_' || (character >= '-' && character <= '/');
}

}  // namespace

std::optional<std::size_t> CardDataSearch::in(std::string_view text) const {
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!isDigit(text[at])) continue;
    if (text.substr(0, at).ends_with(beforePort)) {
      const auto end = std::min(text.find_first_not_of("0123456789", at), text.size());
      if (end - at <= 5) at = end;
      if (at == end) continue;
    }
    if (isNumberAt(text, at) || isCodeAt(text, at)) return at;
  }
  return std::nullopt;
}

/// Whether more digits of the number can be read from here on than may stand.
bool CardDataSearch::isNumberAt(std::string_view text, std::size_t at) const {
  const bool standsFree = at == 0 || !isDigit(text[at - 1]);
  for (std::size_t first = 0; first + tooMany <= number_.size(); ++first) {
    std::size_t count = 0;
    std::size_t beforeGap = 0;
    for (auto next = at; next < text.size() && first + count < number_.size(); ++next) {
      if (isGap(text[next])) {
        if (beforeGap == 0) beforeGap = count;
      } else if (text[next] == number_[first + count]) {
        ++count;
      } else {
        break;
      }
    }
    if (beforeGap == 0) beforeGap = count;
    const bool beginsNumber = first == 0 && standsFree;
    if (beforeGap >= tooMany || count >= (beginsNumber ? tooManyAtItsBegin : tooManyWithGaps))
      return true;
  }
  return false;
}

/// Whether the code stands here with no digit beside it, and is not the fraction of a number.
bool CardDataSearch::isCodeAt(std::string_view text, std::size_t at) const {
  const auto end = at + code_.size();
  if (code_.empty() || end > text.size()) return false;
  if (at > 0 && isDigit(text[at - 1])) return false;
  if (at > 1 && text[at - 1] == '.' && isDigit(text[at - 2])) return false;
  if (end < text.size() && isDigit(text[end])) return false;
  return text.substr(at, code_.size()) == code_;
}

}  // namespace hlv::testing
