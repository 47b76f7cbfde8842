#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"

#include "Host/Halvo_Errors/HLVErrorDomains.h"
#include "Host/Host.h"

namespace hlv {
namespace {

NullableString constant(NullableString HLVSDKConstants::*text) {
  const auto constants = Host::ask(&Host::constants);
  return constants ? (*constants).*text : std::nullopt;
}

}  // namespace

NullableString kHLVSDKCreditCardUseCaseDefault() {
  return constant(&HLVSDKConstants::useCaseDefault);
}

NullableString kHLVSDKCreditCardUseCasePrivate() {
  return constant(&HLVSDKConstants::useCasePrivate);
}

NullableString kHLVSDKCreditCardUseCaseBusiness() {
  return constant(&HLVSDKConstants::useCaseBusiness);
}

NullableString HLVSDKCreditCardBusinessAddressJSONKeyes(std::size_t position) {
  const auto constants = Host::ask(&Host::constants);
  if (!constants || position >= constants->businessAddressJSONKeyes.size()) return std::nullopt;
  return constants->businessAddressJSONKeyes[position];
}

NullableString HLVURLErrorDomain() { return constant(&HLVSDKConstants::urlErrorDomain); }

NullableString HLVPaymentErrorDomain() { return constant(&HLVSDKConstants::paymentErrorDomain); }

NullableString kHLVSDKDidChangeAuthorizationStatusNotification() {
  return constant(&HLVSDKConstants::authorizationStatusNotification);
}

NullableString kHLVSDKNotificationUserInfoIsAuthorizedKey() {
  return constant(&HLVSDKConstants::isAuthorizedKey);
}

NullableString HLVSDKReachabilityDidChangeReachabilityStateNotification() {
  return constant(&HLVSDKConstants::reachabilityStateNotification);
}

NullableString HLVSDKReachabilityDidChangeReachabilityNotificationStateKey() {
  return constant(&HLVSDKConstants::reachabilityStateKey);
}

NullableString HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey() {
  return constant(&HLVSDKConstants::reachabilityPreviousStateKey);
}

}  // namespace hlv
