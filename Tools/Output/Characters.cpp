#include "Tools/Output/Characters.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace hlv::tool {
namespace {

struct Character {
  std::size_t size;
  char32_t value;
  bool isValid;
};

Character characterAt(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned lead = byte(at);
  if (lead < 0x80) return {1, lead, true};
  const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  const Character stray{1, lead, false};
  if (lead < 0xC2 || lead > 0xF4 || text.size() - at < size) return stray;
  char32_t value = lead & (0x7FU >> size);
  for (std::size_t next = at + 1; next < at + size; ++next) {
    if ((byte(next) & 0xC0U) != 0x80) return stray;
    value = value << 6U | (byte(next) & 0x3FU);
  }
  constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  if (value < smallest[size] || value > 0x10FFFF || isSurrogate) return stray;
  return {size, value, true};
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
