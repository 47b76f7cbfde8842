// Where a service is.
#pragma once

#include <optional>
#include <string>

namespace hlv::services {

/// Threading: plain value; any.
struct ServiceURL {
  std::string host;
  std::string port;

  /// Reads "http://HOST:PORT", where the host is a name or an IPv4 address and the port may be left
  /// out. Nothing for every other text.
  static std::optional<ServiceURL> read(const std::string& text);
};

}  // namespace hlv::services
