// Where a listener listens, and what it takes.
//
// Threading: plain values.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace hlv::sandbox::server {

/// What one request and one connection may take of a listener.
struct HttpLimits {
  std::size_t targetBytes = 1024;
  std::uint32_t headBytes = 16U * 1024;
  std::size_t bodyBytes = 64UL * 1024;
  /// For all of a head to arrive once its first byte has, then for all of the body.
  std::chrono::milliseconds headTime{10'000};
  std::chrono::milliseconds bodyTime{10'000};
  /// For all of a reply to leave. Slow replies and event streams have no such limit.
  std::chrono::milliseconds transferTime{10'000};
  /// How long a connection is kept open without a request.
  std::chrono::milliseconds idleTime{75'000};
  /// How long a request is held. When it has passed, the connection is closed without a reply.
  std::chrono::milliseconds answerTime{30'000};
  /// Further connections wait in the backlog.
  std::size_t connections = 12'000;
};

struct ListenOptions {
  /// An IP address. One that is not of this machine alone is refused without `beyondThisMachine`.
  std::string address = "127.0.0.1";
  bool beyondThisMachine = false;
  /// 0 is any free one.
  int port = 0;
  /// Names that clients may call the listener by, beside those of the loopback and 10.0.2.2, which
  /// is this machine for a phone's emulator. With `beyondThisMachine`, IP addresses too.
  std::vector<std::string> allowedHosts;
  HttpLimits limits;
};

}  // namespace hlv::sandbox::server
