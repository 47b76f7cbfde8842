#include "Sandbox/Host/Constants.h"

#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Records/AddressKeys.h"

namespace hlv::sandbox {

std::shared_ptr<const HLVSDKConstants> sandboxConstants() {
  static const auto& constants = *new auto(std::make_shared<const HLVSDKConstants>(HLVSDKConstants{
      .useCaseDefault = "default",
      .useCasePrivate = "private",
      .useCaseBusiness = "business",
      .businessAddressJSONKeyes = {addressKeys::street, addressKeys::city, addressKeys::countryCode,
                                   addressKeys::zip, addressKeys::businessName},
      .urlErrorDomain = urlErrorDomain,
      .paymentErrorDomain = paymentErrorDomain,
      .authorizationStatusNotification = "HLVSDKDidChangeAuthorizationStatusNotification",
      .isAuthorizedKey = "HLVSDKNotificationUserInfoIsAuthorizedKey",
      .reachabilityStateNotification = "HLVSDKReachabilityDidChangeReachabilityStateNotification",
      .reachabilityStateKey = "HLVSDKReachabilityDidChangeReachabilityNotificationStateKey",
      .reachabilityPreviousStateKey =
          "HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey"}));
  return constants;
}

}  // namespace hlv::sandbox
