// What asks for a synchronisation, for the kit's facade in either object model. Not installed.
//
// Threading: any.
#pragma once

#include <cstdint>

#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/Halvo_Authentication/HLVSession.h"
#include "Platform/Notification.h"
#include "Values/Send.h"

namespace hlv {

inline bool isActiveSessionAuthorized() {
  return send(HLVSession::activeSession(), &HLVSession::isAuthorized);
}

inline bool saysThatTheGuestIsAuthorized(const Notification& notification) {
  const auto& isAuthorized =
      valueForKey(notification.userInfo, kHLVSDKNotificationUserInfoIsAuthorizedKey());
  return isAuthorized.boolValue();
}

/// From another state, reachable or not.
inline bool saysThatTheNetworkTurnedReachable(const Notification& notification) {
  const auto stateUnder = [&](const NullableString& key) {
    return static_cast<std::uint8_t>(valueForKey(notification.userInfo, key).integerValue());
  };
  const auto state = stateUnder(HLVSDKReachabilityDidChangeReachabilityNotificationStateKey());
  const auto previousState =
      stateUnder(HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey());
  return isReachable(state) && state != previousState;
}

}  // namespace hlv
