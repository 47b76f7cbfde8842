#include "ObjC/Sandbox/Constants.h"

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>

#include <vector>

#include "ObjC/Binding/Strings.h"
#include "Sandbox/Host/DeviceHost.h"

namespace hlv::sandbox::objc {
namespace {

struct Comparison {
  const char* name;
  NSString* constant;
  NullableString text;
};

std::vector<Comparison> comparisons() {
  const auto texts = sandboxConstants();
  std::vector<Comparison> comparisons = {
      {"kHLVSDKCreditCardUseCaseDefault", ::kHLVSDKCreditCardUseCaseDefault, texts->useCaseDefault},
      {"kHLVSDKCreditCardUseCasePrivate", ::kHLVSDKCreditCardUseCasePrivate, texts->useCasePrivate},
      {"kHLVSDKCreditCardUseCaseBusiness", ::kHLVSDKCreditCardUseCaseBusiness,
       texts->useCaseBusiness},
      {"kHLVSDKDidChangeAuthorizationStatusNotification",
       ::kHLVSDKDidChangeAuthorizationStatusNotification, texts->authorizationStatusNotification},
      {"kHLVSDKNotificationUserInfoIsAuthorizedKey", ::kHLVSDKNotificationUserInfoIsAuthorizedKey,
       texts->isAuthorizedKey},
      {"HLVSDKReachabilityDidChangeReachabilityStateNotification",
       ::HLVSDKReachabilityDidChangeReachabilityStateNotification,
       texts->reachabilityStateNotification},
      {"HLVSDKReachabilityDidChangeReachabilityNotificationStateKey",
       ::HLVSDKReachabilityDidChangeReachabilityNotificationStateKey, texts->reachabilityStateKey},
      {"HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey",
       ::HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey,
       texts->reachabilityPreviousStateKey},
      {"HLVURLErrorDomain", ::HLVURLErrorDomain, texts->urlErrorDomain},
      {"HLVPaymentErrorDomain", ::HLVPaymentErrorDomain, texts->paymentErrorDomain}};
  NSEnumerator* keys = [::HLVSDKCreditCardBusinessAddressJSONKeyes objectEnumerator];
  for (const auto& text : texts->businessAddressJSONKeyes) {
    comparisons.push_back({"HLVSDKCreditCardBusinessAddressJSONKeyes", [keys nextObject], text});
  }
  return comparisons;
}

}  // namespace

std::string problemOfConstants() {
  for (const auto& [name, constant, text] : comparisons()) {
    if (hlv::objc::fromNSString(constant) != text) {
      return std::string(name) + " is another text than the sandbox's own.";
    }
  }
  return "";
}

}  // namespace hlv::sandbox::objc
