#include "Tools/Prompt.h"

#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <iostream>

namespace hlv::sandbox::tool::prompt {
namespace {

/// By which a person or a system ends a command.
constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// A signal handler can reach nothing else.
termios shownSettings;
std::array<struct sigaction, endingSignals.size()> handlersBefore;

/// The line that nobody saw ends too.
void showTyping() {
  ::tcsetattr(STDIN_FILENO, TCSANOW, &shownSettings);
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, "\n", 1);
  for (std::size_t i = 0; i < endingSignals.size(); ++i) {
    ::sigaction(endingSignals[i], &handlersBefore[i], nullptr);
  }
}

extern "C" void showTypingAndEnd(int signal) {
  showTyping();
  ::raise(signal);
}

/// While it lives, the terminal does not show what is typed.
class HiddenTyping {
 public:
  HiddenTyping() {
    ::tcgetattr(STDIN_FILENO, &shownSettings);
    struct sigaction action {};
    action.sa_handler = showTypingAndEnd;
    for (std::size_t i = 0; i < endingSignals.size(); ++i) {
      ::sigaction(endingSignals[i], &action, &handlersBefore[i]);
    }
    termios hidden = shownSettings;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    // A stopped process would leave a terminal that hides everything.
    hidden.c_cc[VSUSP] = _POSIX_VDISABLE;
    ::tcsetattr(STDIN_FILENO, TCSADRAIN, &hidden);
  }
  ~HiddenTyping() { showTyping(); }
  HiddenTyping(const HiddenTyping&) = delete;
  HiddenTyping& operator=(const HiddenTyping&) = delete;
};

std::string withoutBlanksAround(const std::string& line) {
  const auto first = line.find_first_not_of(" \t\r");
  if (first == std::string::npos) return {};
  return line.substr(first, line.find_last_not_of(" \t\r") - first + 1);
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

}  // namespace

bool isPossible() { return ::isatty(STDIN_FILENO) == 1; }

std::optional<std::string> ask(const std::string& question) {
  std::cerr << question << ": " << std::flush;
  return readLine();
}

std::optional<std::string> askHidden(const std::string& question) {
  if (!isPossible()) return readLine();
  // Hidden before it is asked for, so that not even a quick answer shows.
  const HiddenTyping hidden;
  std::cerr << question << ": " << std::flush;
  return readLine();
}

}  // namespace hlv::sandbox::tool::prompt
