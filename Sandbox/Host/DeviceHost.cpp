#include "Sandbox/Host/DeviceHost.h"

#include "Sandbox/Backend/AddCardBody.h"
#include "Sandbox/Backend/Session.h"
#include "Sandbox/Backend/UpdateGuestRequest.h"
#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Errors/ErrorFacade.h"
#include "Sandbox/Host/Constants.h"
#include "Sandbox/Host/SandboxHost.h"
#include "Sandbox/Provider/CardInstruments.h"

namespace hlv::sandbox {

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

std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> DeviceHost::makeAddCreditCardRequestBody(
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
