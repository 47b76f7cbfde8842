// What can be said with every command.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace hlv::tool {

struct GlobalOptions {
  /// Empty means the store in the user's data folder.
  std::string storePath;
  bool json = false;
  std::optional<std::uint64_t> seed;
  /// How the kit is enabled: one of `Enabling::ways()`.
  std::string enabling = "normal";
  bool logToConsole = false;
  /// Where the services are; empty for the embedded ones.
  std::string backendURL;
  std::string providerURL;
};

}  // namespace hlv::tool
