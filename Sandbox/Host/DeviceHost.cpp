#include "Sandbox/Host/DeviceHost.h"

#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/Halvo_Authentication/HLVSession.h"
#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Backend/Requests.h"
#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Errors/ErrorFacade.h"
#include "Sandbox/Host/SandboxHost.h"
#include "Sandbox/Provider/CardInstruments.h"
#include "Sandbox/Records/AddressKeys.h"

namespace hlv::sandbox {
namespace {

/// Authorised for as long as its guest is the one signed in.
///
/// Threading: any.
class Session final : public HLVSession {
 public:
  Session(std::string email, std::shared_ptr<Store> store)
      : email_(std::move(email)), store_(std::move(store)) {}

  bool isAuthorized() const override {
    return store_->readOrNothing(backend::signedInEmail) == email_;
  }

 private:
  const std::string email_;
  const std::shared_ptr<Store> store_;
};

}  // namespace

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

std::shared_ptr<const HLVSDKConstants> DeviceHost::constants() { return sandboxConstants(); }

std::shared_ptr<HLVSDKReachability> DeviceHost::reachability() { return parts_->reachability; }

std::shared_ptr<HLVSDKLogger> DeviceHost::remoteLogger() { return parts_->remoteLog; }

std::shared_ptr<HLVSDKLogger> DeviceHost::consoleLogger() { return parts_->consoleLog; }

NullableString DeviceHost::cardBrandFromNumber(const NullableString& number) {
  if (!number) return std::nullopt;
  // The longest prefix has eight digits; more of the number is not copied.
  std::string prefix;
  for (const char character : *number) {
    if (character == ' ' || character == '-') continue;
    if (prefix.size() < longestPrefix) prefix += character;
  }
  const auto* brand = findCardBrand(prefix);
  return brand ? NullableString(brand->name) : std::nullopt;
}

std::shared_ptr<HLVSDKUpdateGuestRequestInfo> DeviceHost::makeUpdateGuestRequestInfo() {
  return std::make_shared<UpdateGuestRequest>();
}

void DeviceHost::handleAssertWithMessage(const NullableString& message) {
  report(message.value_or("(no message)"));
}

void DeviceHost::handleParameterAssert(const NullableString& parameter,
                                       const NullableString& message) {
  report(parameter.value_or("(no name)") + (message ? ": " + *message : ""));
}

void DeviceHost::report(const std::string& assertion) {
  parts_->journal->record("kit", "assert", assertion);
  parts_->consoleLog->write(1, "Assertion: " + assertion);
}

std::shared_ptr<HLVSDKAddCreditCardRequestBody> DeviceHost::makeAddCreditCardRequestBody(
    const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) {
  return std::make_shared<AddCardBody>(instrument, address);
}

std::shared_ptr<HLVSession> DeviceHost::activeSession() {
  const auto email = parts_->store->readOrNothing(backend::signedInEmail);
  return email ? std::make_shared<Session>(*email, parts_->store) : nullptr;
}

std::shared_ptr<HLVErrorFacade> DeviceHost::makeErrorFacade() {
  return std::make_shared<ErrorFacade>();
}

std::shared_ptr<PLVCreditCardPaymentInstrument> DeviceHost::makeCreditCardPaymentInstrument(
    const NullableString& pan, const NullableString& expiryMonth, const NullableString& expiryYear,
    const NullableString& cvv, const NullableString& cardHolder) {
  // Built in place: a text that is moved leaves its characters behind.
  return std::make_shared<NewInstrument>(
      EnteredCard::make({pan.value_or(""), expiryMonth.value_or(""), expiryYear.value_or(""),
                         cvv.value_or(""), cardHolder.value_or("")}));
}

}  // namespace hlv::sandbox
