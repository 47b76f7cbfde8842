// What one request and one connection may take of a listener.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace hlv::server {

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

}  // namespace hlv::server
