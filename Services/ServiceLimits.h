// What one request may take of a service.
#pragma once

#include <chrono>
#include <cstddef>

namespace hlv::services {

struct ServiceLimits {
  std::size_t bodyBytes = 64UL * 1024;
  /// For all of a request to arrive, and again for all of its answer to leave.
  std::chrono::milliseconds transferTime{10'000};
  /// How long a request waits for the sandbox. When it has passed, the connection is closed without
  /// an answer.
  std::chrono::milliseconds answerTime{30'000};
};

}  // namespace hlv::services
