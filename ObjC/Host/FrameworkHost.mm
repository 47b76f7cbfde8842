#include "ObjC/Host/FrameworkHost.h"

#include <utility>

#include "ObjC/Binding/Crossing.h"
#include "ObjC/Host/APIManager.h"
#include "ObjC/Host/InAppClient.h"
#include "ObjC/Host/Logger.h"
#include "ObjC/Host/Records.h"
#include "ObjC/Host/RequestBody.h"
#include "ObjC/Host/Services.h"

namespace hlv::objc {
namespace {

void readTexts(HLVSDKConstants& texts, NSArray* addressKeys) {
  const std::pair<NullableString HLVSDKConstants::*, NSString*> rows[] = {
      {&HLVSDKConstants::useCaseDefault, ::kHLVSDKCreditCardUseCaseDefault},
      {&HLVSDKConstants::useCasePrivate, ::kHLVSDKCreditCardUseCasePrivate},
      {&HLVSDKConstants::useCaseBusiness, ::kHLVSDKCreditCardUseCaseBusiness},
      {&HLVSDKConstants::urlErrorDomain, ::HLVURLErrorDomain},
      {&HLVSDKConstants::paymentErrorDomain, ::HLVPaymentErrorDomain},
      {&HLVSDKConstants::authorizationStatusNotification,
       ::kHLVSDKDidChangeAuthorizationStatusNotification},
      {&HLVSDKConstants::isAuthorizedKey, ::kHLVSDKNotificationUserInfoIsAuthorizedKey},
      {&HLVSDKConstants::reachabilityStateNotification,
       ::HLVSDKReachabilityDidChangeReachabilityStateNotification},
      {&HLVSDKConstants::reachabilityStateKey,
       ::HLVSDKReachabilityDidChangeReachabilityNotificationStateKey},
      {&HLVSDKConstants::reachabilityPreviousStateKey,
       ::HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey}};
  for (const auto& [member, text] : rows) texts.*member = fromNSString(text);
  for (NSString* key in addressKeys) {
    texts.businessAddressJSONKeyes.push_back(fromNSString(key));
  }
}

/// A text that is gone as soon as it was used: card data does not wait for a pool.
class BriefString {
 public:
  explicit BriefString(const NullableString& text) : string_(newNSString(text)) {}
  BriefString(const BriefString&) = delete;
  BriefString& operator=(const BriefString&) = delete;
  ~BriefString() { [string_ release]; }
  NSString* string() const { return string_; }

 private:
  NSString* const string_;
};

}  // namespace

std::shared_ptr<const HLVSDKConstants> FrameworkHost::constants() {
  NSArray* const keys = ::HLVSDKCreditCardBusinessAddressJSONKeyes;
  auto known = constants_.load();
  if (!known || (keys != known->keys.held() && ![keys isEqual:known->keys.held()])) {
    known = std::make_shared<Constants>([[keys copy] autorelease]);
    readTexts(known->texts, keys);
    constants_.store(known);
  }
  return std::shared_ptr<const HLVSDKConstants>(known, &known->texts);
}

std::shared_ptr<HLVSDKAPIManager> FrameworkHost::apiManager() {
  return adapted<APIManager>([::HLVSDKAPIManager manager]);
}

std::shared_ptr<HLVSDKReachability> FrameworkHost::reachability() {
  return adapted<Reachability>([::HLVSDKReachability sharedReachability]);
}

std::shared_ptr<HLVSDKGuest> FrameworkHost::currentGuest() {
  return adapted<Guest>([::HLVSDKGuest currentGuest]);
}

NullableString FrameworkHost::cardBrandFromNumber(const NullableString& number) {
  const BriefString text(number);
  return fromNSString([::HLVSDKCreditCard cardBrandFromNumber:text.string()]);
}

std::shared_ptr<HLVSDKUpdateGuestRequestInfo> FrameworkHost::makeUpdateGuestRequestInfo() {
  return adapted<UpdateGuestRequest>([[::HLVSDKUpdateGuestRequestInfo new] autorelease]);
}

void FrameworkHost::handleAssertWithMessage(const NullableString& message) {
  [::HLVSDKAsserts handleAssertWithMessage:toNSString(message)];
}

void FrameworkHost::handleParameterAssert(const NullableString& parameter,
                                          const NullableString& message) {
  [::HLVSDKAsserts handleParameterAssert:toNSString(parameter) withMessage:toNSString(message)];
}

std::shared_ptr<HLVSDKLogger> FrameworkHost::remoteLogger() {
  return adapted<Logger>([::HLVSDKRemoteLogger sharedLogger]);
}

std::shared_ptr<HLVSDKLogger> FrameworkHost::consoleLogger() {
  return adapted<Logger>([::HLVSDKConsoleLogger sharedLogger]);
}

std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> FrameworkHost::makeAddCreditCardRequestBody(
    const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) {
  return std::make_shared<RequestBody>(instrument, address);
}

std::shared_ptr<HLVSession> FrameworkHost::activeSession() {
  return adapted<Session>([::HLVSession activeSession]);
}

std::shared_ptr<HLVErrorFacade> FrameworkHost::makeErrorFacade() {
  return adapted<ErrorFacade>([[::HLVErrorFacade new] autorelease]);
}

std::shared_ptr<PLVInAppClient> FrameworkHost::inAppClient() {
  return adapted<InAppClient>([::PLVInAppClient sharedInstance]);
}

std::shared_ptr<PLVCreditCardPaymentInstrument> FrameworkHost::makeCreditCardPaymentInstrument(
    const NullableString& pan, const NullableString& expiryMonth, const NullableString& expiryYear,
    const NullableString& cvv, const NullableString& cardHolder) {
  const BriefString number(pan);
  const BriefString code(cvv);
  return adapted<Instrument>([::PLVPaymentInstrument
      createCreditCardPaymentInstrumentWithPan:number.string()
                                   expiryMonth:toNSString(expiryMonth)
                                    expiryYear:toNSString(expiryYear)
                                           cvv:code.string()
                                 andCardHolder:toNSString(cardHolder)]);
}

}  // namespace hlv::objc
