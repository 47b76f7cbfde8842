// The host's view of the network.
#pragma once

#include <cstdint>
#include <memory>

#include "Host/Host.h"
#include "Values/Export.h"
#include "Values/Object.h"

namespace hlv {

/// Implementations must take calls from any thread, and post
/// `HLVSDKReachabilityDidChangeReachabilityStateNotification` when the state changes.
class HLV_EXPORT HLVSDKReachability : public Object {
 public:
  /// `+sharedReachability`
  static std::shared_ptr<HLVSDKReachability> sharedReachability() {
    return Host::ask(&Host::reachability);
  }

  /// `-currentState`. Zero means not reachable; the kit looks at the lowest eight bits.
  virtual std::int64_t currentState() const = 0;
};

/// Whether a reachability state, as the host numbers it, means that the network can be used.
inline bool isReachable(std::int64_t state) { return static_cast<std::uint8_t>(state) != 0; }

}  // namespace hlv
