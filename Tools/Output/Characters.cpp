#include "Tools/Output/Characters.h"

#include <array>
#include <boost/locale/utf.hpp>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace hlv::tool {
namespace {

namespace utf = boost::locale::utf;

/// What is no UTF-8 is taken byte by byte.
struct Character {
  std::size_t size;
  char32_t value;
  bool isValid;
};

Character characterAt(std::string_view text, std::size_t at) {
  const char* next = text.data() + at;
  const auto value = utf::utf_traits<char>::decode(next, text.data() + text.size());
  if (!utf::is_valid_codepoint(value)) return {1, static_cast<unsigned char>(text[at]), false};
  return {static_cast<std::size_t>(next - text.data()) - at, value, true};
}

/// What a terminal obeys, and what turns the order of what stands beside it.
bool controls(char32_t value) {
  return value < 0x20 || (value >= 0x7F && value < 0xA0) || value == 0x61C || value == 0x200E ||
         value == 0x200F || (value >= 0x2028 && value <= 0x202E) ||
         (value >= 0x2066 && value <= 0x2069);
}

constexpr std::pair<char32_t, char> lookalikes[] = {
    {U'•', '*'}, {U'═', '='}, {U'✗', 'x'}, {U'✓', '+'}, {U'–', '-'}, {U'─', '-'},
    {U'…', '~'}, {U'→', '>'}, {U'·', '.'}, {U'┌', ','}, {U'│', '|'}, {U'└', '`'}};

char lookalikeOf(char32_t value) {
  for (const auto& [character, ascii] : lookalikes) {
    if (character == value) return ascii;
  }
  return '?';
}

}  // namespace

std::string escaped(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const auto [size, value, isValid] = characterAt(text, at);
    if (isValid && !controls(value)) {
      result += text.substr(at, size);
    } else {
      std::array<char, 8> code{};
      std::snprintf(code.data(), code.size(), value < 0x100 ? "\\x%02x" : "\\u%04x",
                    static_cast<unsigned>(value));
      result += code.data();
    }
    at += size;
  }
  return result;
}

std::string inASCII(std::string_view text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const auto [size, value, isValid] = characterAt(text, at);
    result += value < 0x80 ? static_cast<char>(value) : lookalikeOf(value);
    at += size;
  }
  return result;
}

}  // namespace hlv::tool
