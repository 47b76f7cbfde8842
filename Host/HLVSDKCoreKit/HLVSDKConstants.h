// Constants whose texts are the host's.
//
// Threading: any.
#pragma once

#include <cstddef>
#include <vector>

#include "Values/Export.h"
#include "Values/NullableString.h"

namespace hlv {

/// The texts of one host: what the functions below, and those of HLVErrorDomains.h, return. While
/// no host is installed they return missing ones.
struct HLV_EXPORT HLVSDKConstants {
  NullableString useCaseDefault;
  NullableString useCasePrivate;
  NullableString useCaseBusiness;
  std::vector<NullableString> businessAddressJSONKeyes;
  NullableString urlErrorDomain;
  NullableString paymentErrorDomain;
  NullableString authorizationStatusNotification;
  NullableString isAuthorizedKey;
  NullableString reachabilityStateNotification;
  NullableString reachabilityStateKey;
  NullableString reachabilityPreviousStateKey;

  bool operator==(const HLVSDKConstants&) const = default;
};

/// The use cases under which the provider stores instruments.
HLV_EXPORT NullableString kHLVSDKCreditCardUseCaseDefault();
HLV_EXPORT NullableString kHLVSDKCreditCardUseCasePrivate();
HLV_EXPORT NullableString kHLVSDKCreditCardUseCaseBusiness();

/// The key at a position of the address dictionary: 0 street, 1 city, 2 countryCode, 3 zip,
/// 4 businessName. Missing where the host has none.
HLV_EXPORT NullableString HLVSDKCreditCardBusinessAddressJSONKeyes(std::size_t position);

/// Posted when the guest's authorisation changes; the user info holds a boolean under
/// `kHLVSDKNotificationUserInfoIsAuthorizedKey`.
HLV_EXPORT NullableString kHLVSDKDidChangeAuthorizationStatusNotification();
HLV_EXPORT NullableString kHLVSDKNotificationUserInfoIsAuthorizedKey();

/// Posted when reachability changes; the user info holds the state and the one before as integers.
HLV_EXPORT NullableString HLVSDKReachabilityDidChangeReachabilityStateNotification();
HLV_EXPORT NullableString HLVSDKReachabilityDidChangeReachabilityNotificationStateKey();
HLV_EXPORT NullableString HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey();

}  // namespace hlv
