// A handler for the signals by which a person or a system ends a command.
//
// Threading: the main thread.
#pragma once

#include <signal.h>

#include <array>
#include <cstddef>

namespace hlv::tool {

/// Has static storage, since a signal handler can reach nothing else.
class EndingHandler {
 public:
  void install(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    for (std::size_t i = 0; i < signals.size(); ++i) ::sigaction(signals[i], &action, &before_[i]);
  }
  /// Brings back the handlers that were there.
  void restore() {
    for (std::size_t i = 0; i < signals.size(); ++i) ::sigaction(signals[i], &before_[i], nullptr);
  }
  /// Ends the process by the signal, after `restore`, as it would have ended without this handler.
  void end(int signal) const {
    for (std::size_t i = 0; i < signals.size(); ++i) {
      const auto earlier = before_[i].sa_handler;
      // It has something to tidy up too, and ends the process.
      if (signals[i] == signal && earlier != SIG_DFL && earlier != SIG_IGN) return earlier(signal);
    }
    ::raise(signal);
  }

 private:
  static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};
  std::array<struct sigaction, signals.size()> before_{};
};

}  // namespace hlv::tool
