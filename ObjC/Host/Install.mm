#include "ObjC/Host/Install.h"

#include <memory>
#include <mutex>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"
#include "Host/Host.h"
#include "ObjC/Foundation/FoundationPlatform.h"
#include "ObjC/Host/Clients.h"
#include "ObjC/Host/Records.h"
#include "ObjC/Host/Services.h"
#include "Platform/SharedSlot.h"

namespace hlv::objc {

HLVSDKConstants frameworkConstants() {
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
  HLVSDKConstants texts;
  for (const auto& [member, text] : rows) texts.*member = fromNSString(text);
  for (NSString* key in ::HLVSDKCreditCardBusinessAddressJSONKeyes) {
    texts.businessAddressJSONKeyes.push_back(fromNSString(key));
  }
  return texts;
}

namespace {

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

/// The host that is made of the host SDK's and the provider's own classes. Every question is one
/// message to a class. Only the constants are kept, until the host's array of address keys is
/// another one: a host may fill it in late.
class FrameworkHost final : public Host {
 public:
  std::shared_ptr<const HLVSDKConstants> constants() override {
    NSArray* const keys = ::HLVSDKCreditCardBusinessAddressJSONKeyes;
    auto known = constants_.load();
    if (!known || (keys != known->keys.held() && ![keys isEqual:known->keys.held()])) {
      known = std::make_shared<Constants>([[keys copy] autorelease]);
      constants_.store(known);
    }
    return std::shared_ptr<const HLVSDKConstants>(known, &known->texts);
  }

  std::shared_ptr<HLVSDKAPIManager> apiManager() override {
    return adapted<APIManager>([::HLVSDKAPIManager manager]);
  }

  std::shared_ptr<HLVSDKReachability> reachability() override {
    return adapted<Reachability>([::HLVSDKReachability sharedReachability]);
  }

  std::shared_ptr<HLVSDKGuest> currentGuest() override {
    return adapted<Guest>([::HLVSDKGuest currentGuest]);
  }

  NullableString cardBrandFromNumber(const NullableString& number) override {
    const BriefString text(number);
    return fromNSString([::HLVSDKCreditCard cardBrandFromNumber:text.string()]);
  }

  std::shared_ptr<HLVSDKUpdateGuestRequestInfo> makeUpdateGuestRequestInfo() override {
    return adapted<UpdateGuestRequest>([[::HLVSDKUpdateGuestRequestInfo new] autorelease]);
  }

  void handleAssertWithMessage(const NullableString& message) override {
    [::HLVSDKAsserts handleAssertWithMessage:toNSString(message)];
  }

  void handleParameterAssert(const NullableString& parameter,
                             const NullableString& message) override {
    [::HLVSDKAsserts handleParameterAssert:toNSString(parameter) withMessage:toNSString(message)];
  }

  std::shared_ptr<HLVSDKLogger> remoteLogger() override {
    return adapted<Logger>([::HLVSDKRemoteLogger sharedLogger]);
  }

  std::shared_ptr<HLVSDKLogger> consoleLogger() override {
    return adapted<Logger>([::HLVSDKConsoleLogger sharedLogger]);
  }

  std::shared_ptr<HLVSDKAddCreditCardRequestBody> makeAddCreditCardRequestBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) override {
    return std::make_shared<RequestBody>(instrument, address);
  }

  std::shared_ptr<HLVSession> activeSession() override {
    return adapted<Session>([::HLVSession activeSession]);
  }

  std::shared_ptr<HLVErrorFacade> makeErrorFacade() override {
    return adapted<ErrorFacade>([[::HLVErrorFacade new] autorelease]);
  }

  std::shared_ptr<PLVInAppClient> inAppClient() override {
    return adapted<InAppClient>([::PLVInAppClient sharedInstance]);
  }

  std::shared_ptr<PLVCreditCardPaymentInstrument> makeCreditCardPaymentInstrument(
      const NullableString& pan, const NullableString& expiryMonth,
      const NullableString& expiryYear, const NullableString& cvv,
      const NullableString& cardHolder) override {
    const BriefString number(pan);
    const BriefString code(cvv);
    return adapted<Instrument>([::PLVPaymentInstrument
        createCreditCardPaymentInstrumentWithPan:number.string()
                                     expiryMonth:toNSString(expiryMonth)
                                      expiryYear:toNSString(expiryYear)
                                             cvv:code.string()
                                   andCardHolder:toNSString(cardHolder)]);
  }

 private:
  struct Constants {
    explicit Constants(NSArray* addressKeys) : keys(addressKeys) {}
    const HLVSDKConstants texts = frameworkConstants();
    const Held keys;
  };
  SharedSlot<Constants> constants_;
};

}  // namespace

void install() {
  static std::once_flag once;
  std::call_once(once, [] {
    keepCapturedObjects();
    if (Host::current()) return;
    Platform::install(makeFoundationPlatform());
    Host::install(std::make_shared<FrameworkHost>());
  });
}

}  // namespace hlv::objc
