// Whether the sandbox's network is on. Private to the sandbox and the server.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {

/// State 0 is off, state 1 is on. Inside `Store::read` and `Store::write`.
std::int64_t readNetworkState(Database& database);
void writeNetworkState(Database& database, std::int64_t state);

/// Kept in the store, so every process sees the same network.
///
/// Threading: any.
class Reachability final : public HLVSDKReachability {
 public:
  explicit Reachability(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  std::int64_t currentState() const override;
  /// Returns the state before.
  std::int64_t setState(std::int64_t state);

 private:
  const std::shared_ptr<Store> store_;
};

}  // namespace hlv::sandbox
