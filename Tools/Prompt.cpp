#include "Tools/Prompt.h"

#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>

#include "Tools/EndingHandler.h"

namespace hlv::tool::prompt {
namespace {

termios shownSettings;
EndingHandler endingHandler;

extern "C" void showTypingAndEnd(int signal) {
  ::tcsetattr(STDIN_FILENO, TCSANOW, &shownSettings);
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, "\n", 1);
  endingHandler.restore();
  endingHandler.end(signal);
}

/// While it lives, the terminal does not show what is typed.
class HiddenTyping {
 public:
  HiddenTyping() {
    ::tcgetattr(STDIN_FILENO, &shownSettings);
    endingHandler.install(showTypingAndEnd);
    termios hidden = shownSettings;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    // A stopped process would leave a terminal that hides everything.
    hidden.c_cc[VSUSP] = _POSIX_VDISABLE;
    ::tcsetattr(STDIN_FILENO, TCSADRAIN, &hidden);
  }
  ~HiddenTyping() {
    ::tcsetattr(STDIN_FILENO, TCSANOW, &shownSettings);
    endingHandler.restore();
    std::cerr << "\n" << std::flush;
  }
  HiddenTyping(const HiddenTyping&) = delete;
  HiddenTyping& operator=(const HiddenTyping&) = delete;
};

std::string withoutBlanksAround(const std::string& line) {
  const auto first = line.find_first_not_of(" \t\r");
  if (first == std::string::npos) return {};
  return line.substr(first, line.find_last_not_of(" \t\r") - first + 1);
}

}  // namespace

bool isPossible() { return ::isatty(STDIN_FILENO) == 1; }

std::optional<std::string> ask(const std::string& question) {
  std::cerr << question << ": " << std::flush;
  return readLine();
}

std::optional<std::string> askHidden(const std::string& question) {
  // Hidden before it is asked for, so that not even a quick answer shows.
  const HiddenTyping hidden;
  std::cerr << question << ": " << std::flush;
  return readLine();
}

std::optional<std::string> readLine() {
  std::string line;
  char byte = 0;
  for (;;) {
    const auto got = ::read(STDIN_FILENO, &byte, 1);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0 && line.empty()) return std::nullopt;
    if (got <= 0 || byte == '\n') return withoutBlanksAround(line);
    line.push_back(byte);
  }
}

}  // namespace hlv::tool::prompt
