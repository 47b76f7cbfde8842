#include "Sandbox/Logging/MaskedText.h"

#include <cstddef>

namespace hlv::sandbox {
namespace {

constexpr std::size_t shortestNumber = 12;
constexpr std::size_t visibleDigits = 4;

bool isDigit(char character) { return character >= '0' && character <= '9'; }
bool isGap(char character) { return character == ' ' || character == '\t' || character == '-'; }

struct Run {
  /// One past the last digit.
  std::size_t end = 0;
  std::size_t digits = 0;
};

Run runFrom(std::string_view text, std::size_t begin) {
  Run run;
  for (auto at = begin; at < text.size() && (isDigit(text[at]) || isGap(text[at])); ++at) {
    if (!isDigit(text[at])) continue;
    run.end = at + 1;
    ++run.digits;
  }
  return run;
}

}  // namespace

std::string maskedText(std::string_view text) {
  std::string result(text);
  for (std::size_t at = 0; at < text.size();) {
    if (!isDigit(text[at])) {
      ++at;
      continue;
    }
    const auto run = runFrom(text, at);
    auto hidden = run.digits < shortestNumber ? 0 : run.digits - visibleDigits;
    for (; at < run.end; ++at) {
      if (hidden == 0 || !isDigit(text[at])) continue;
      result[at] = '*';
      --hidden;
    }
  }
  return result;
}

}  // namespace hlv::sandbox
