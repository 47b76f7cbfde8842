// A connected socket with a patience of its own. Private to the services.
#pragma once

#include <chrono>
#include <cstddef>

namespace hlv::services {

/// Threading: one thread at a time.
class Socket {
 public:
  using Clock = std::chrono::steady_clock;
  enum class Outcome { done, ended, timedOut, failed };
  struct Transfer {
    Outcome outcome;
    std::size_t bytes = 0;
  };

  /// Takes over `descriptor`, which may be negative for none.
  explicit Socket(int descriptor) : descriptor_(descriptor) {}
  ~Socket();
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  int descriptor() const { return descriptor_; }
  /// Waits for some bytes, at the latest until `deadline`.
  Transfer read(char* bytes, std::size_t size, Clock::time_point deadline);
  /// Writes some bytes.
  Transfer write(const char* bytes, std::size_t size, Clock::time_point deadline);
  /// Waits until the socket takes bytes, or `deadline` has come.
  Outcome awaitWritable(Clock::time_point deadline) const;
  /// Says that nothing more will be written, and lets the other side finish what it is saying, so
  /// that it hears what was written before.
  void endPolitely(Clock::time_point deadline);
  /// Lets the closing of the connection reach the other side as a reset.
  void endRudely();
  /// Whether the other side has closed the connection, or reset it.
  bool hasEnded() const;

 private:
  Outcome await(short events, Clock::time_point deadline) const;

  const int descriptor_;
};

}  // namespace hlv::services
