// Where a service is, and texts as parts of a URL.
//
// Threading: plain values and pure functions; any.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace hlv::client {

struct ServiceURL {
  std::string host;
  std::string port;
  /// What stands before every path of the service; empty or "/A/B", encoded.
  std::string path;

  /// Reads "http://HOST:PORT/PATH", where the host is a name or an IPv4 address; port and path may
  /// be left out. Nothing for every other text.
  static std::optional<ServiceURL> read(const std::string& text);
};

/// Everything but letters, digits and "-._~" as percent signs with two digits.
std::string percentEncoded(std::string_view text);

}  // namespace hlv::client
