// Sandboxes of a server, as plain values.
//
// Threading: plain values; any.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace hlv::sandbox {

struct SandboxDescription {
  std::string id;
  /// Why its store cannot be used, in one sentence. Seed, clock, network and guests are not known
  /// then.
  std::optional<std::string> problem;
  std::optional<std::uint64_t> seed;
  /// Times are in ISO 8601, in UTC.
  std::string clock;
  bool isNetworkOn = true;
  bool isInMemory = false;
  std::string created;
  /// When the server deletes it; missing for never.
  std::optional<std::string> expires;
  std::int64_t guests = 0;
  std::string backendURL;
  std::string providerURL;
  std::string controlURL;
  std::string consoleURL;
};

/// What a new sandbox is to be; the server chooses what is missing.
struct NewSandbox {
  std::optional<std::string> id = {};
  std::optional<std::uint64_t> seed = {};
  std::optional<std::string> clock = {};
  /// The snapshot that it starts from.
  std::optional<std::string> snapshot = {};
  std::optional<std::int64_t> secondsToLive = {};
  bool isInMemory = false;
};

struct SnapshotDescription {
  std::string id;
  std::string created;
  /// The sandbox that it was made of.
  std::string sandbox;
};

}  // namespace hlv::sandbox
