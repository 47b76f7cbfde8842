#include "Tools/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace hlv::tool {
namespace {

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value && *value;
}

bool isDumb() {
  const char* kind = std::getenv("TERM");
  return !kind || std::string_view(kind) == "dumb";
}

const char* codeOf(Colour colour) {
  switch (colour) {
    case Colour::plain:
      return "";
    case Colour::bold:
      return "\033[1m";
    case Colour::dim:
      return "\033[2m";
    case Colour::red:
      return "\033[31m";
    case Colour::green:
      return "\033[32m";
    case Colour::yellow:
      return "\033[33m";
  }
  return "";
}

}  // namespace

Terminal Terminal::ofStandardOutput() {
  Terminal terminal;
  if (!::isatty(STDOUT_FILENO)) return terminal;
  terminal.colours_ = !isSet("NO_COLOR") && !isDumb();
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    terminal.columns_ = size.ws_col;
  }
  return terminal;
}

std::string Terminal::paint(Colour colour, const std::string& text) const {
  if (!colours_ || colour == Colour::plain || text.empty()) return text;
  return codeOf(colour) + text + "\033[0m";
}

}  // namespace hlv::tool
