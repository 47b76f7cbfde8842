#include "Tools/Output/Terminal.h"

#include <string.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <boost/locale/utf.hpp>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "Sandbox/JSON/Json.h"
#include "Values/Names.h"

namespace hlv::sandbox::tool {
namespace {

/// Empty when it is not set.
std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

/// What the user's locale says of its encoding; one that is not named is taken for UTF-8, which is
/// what terminals speak.
bool localeHasUTF8() {
  for (const char* category : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const auto name = variable(category);
    if (name.empty()) continue;
    return ::strcasestr(name.c_str(), "utf8") || ::strcasestr(name.c_str(), "utf-8");
  }
  return true;
}

bool isDumb() {
  const auto kind = variable("TERM");
  return kind.empty() || kind == "dumb";
}

constexpr Names<Colour, 6> codes{{{Colour::plain, ""},
                                  {Colour::bold, "\033[1m"},
                                  {Colour::dim, "\033[2m"},
                                  {Colour::red, "\033[31m"},
                                  {Colour::green, "\033[32m"},
                                  {Colour::yellow, "\033[33m"}}};

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

Terminal Terminal::ofStandardOutput() {
  Terminal terminal;
  terminal.hasUTF8_ = localeHasUTF8();
  const auto wanted = numberOf(variable("COLUMNS")).value_or(0);
  if (wanted > 0) terminal.columns_ = static_cast<std::size_t>(wanted);
  if (!::isatty(STDOUT_FILENO)) return terminal;
  terminal.colours_ = variable("NO_COLOR").empty() && !isDumb();
  winsize size{};
  if (wanted <= 0 && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    terminal.columns_ = size.ws_col;
  }
  return terminal;
}

std::string Terminal::paint(Colour colour, const std::string& text) const {
  if (!colours_ || colour == Colour::plain || text.empty()) return text;
  return std::string(codes.of(colour)) + text + "\033[0m";
}

}  // namespace hlv::sandbox::tool
