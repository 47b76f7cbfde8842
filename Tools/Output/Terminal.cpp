#include "Tools/Output/Terminal.h"

#include <string.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

#include "Sandbox/JSON/Json.h"
#include "Values/Names.h"

namespace hlv::tool {
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

}  // namespace

Terminal Terminal::ofStandardOutput() {
  Terminal terminal;
  terminal.hasUTF8_ = localeHasUTF8();
  const auto wanted = sandbox::numberOf(variable("COLUMNS")).value_or(0);
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

}  // namespace hlv::tool
