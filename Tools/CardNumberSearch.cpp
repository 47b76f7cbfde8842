#include "Tools/CardNumberSearch.h"

#include <string>
#include <vector>

#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Masking/MaskedText.h"

namespace hlv::tool {
namespace {

/// Whether groups from the beginning of the list on make a number.
bool beginWithNumber(const std::vector<std::string>& groups, std::size_t first) {
  constexpr std::size_t longest = 19;
  std::string digits;
  for (auto group = first; group < groups.size(); ++group) {
    digits += groups[group];
    if (digits.size() > longest) return false;
    if (sandbox::isCardNumber(digits)) return true;
  }
  return false;
}

bool holdNumber(const std::vector<std::string>& groups) {
  for (std::size_t first = 0; first < groups.size(); ++first) {
    if (beginWithNumber(groups, first)) return true;
  }
  return false;
}

}  // namespace

bool holdsValidCardNumber(std::string_view text) {
  std::vector<std::string> groups(1);
  for (const char character : sandbox::plainNumbers(text) + ":") {
    if (character == ' ') {
      if (!groups.back().empty()) groups.emplace_back();
    } else if (character == ':') {
      if (holdNumber(groups)) return true;
      groups.assign(1, "");
    } else {
      groups.back() += character;
    }
  }
  return false;
}

}  // namespace hlv::tool
