// Whether the sandbox's network is on. Private to the sandbox and the server.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Sandbox/Store/Settings.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {

/// State 0 is off, state 1 is on. Inside `Store::read` and `Store::write`.
inline std::int64_t readNetworkState(Database& database) {
  return readSetting(database, "network") == "off" ? 0 : 1;
}
inline void writeNetworkState(Database& database, std::int64_t state) {
  writeSetting(database, "network", state == 0 ? "off" : "on");
}

/// Kept in the store, so every process sees the same network.
///
/// Threading: any.
class Reachability final : public HLVSDKReachability {
 public:
  explicit Reachability(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  std::int64_t currentState() const override { return store_->readOrNothing(readNetworkState); }
  /// Returns the state before.
  std::int64_t setState(std::int64_t state) {
    return store_->write([&](Database& database) {
      const auto before = readNetworkState(database);
      writeNetworkState(database, state);
      return before;
    });
  }

 private:
  const std::shared_ptr<Store> store_;
};

}  // namespace hlv::sandbox
