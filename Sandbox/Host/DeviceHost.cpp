#include "Sandbox/Host/SandboxHost.h"

#include "Sandbox/Backend/AddCardBody.h"
#include "Sandbox/Backend/Session.h"
#include "Sandbox/Backend/UpdateGuestRequest.h"
#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Errors/ErrorFacade.h"
#include "Sandbox/Host/Constants.h"
#include "Sandbox/Provider/CardInstruments.h"

namespace hlv::sandbox {

Parts::Parts(std::shared_ptr<Store> openedStore, LogSink remoteSink, LogSink consoleSink)
    : store(std::move(openedStore)),
      journal(std::make_shared<Journal>(store, "start")),
      reachability(std::make_shared<Reachability>(store)),
      answers(std::make_shared<ReplyQueue>()),
      guests(std::make_shared<Guests>(store)),
      backend(
          std::make_shared<BackendClient>(guests, Service::Surroundings{store, journal, answers})),
      provider(std::make_shared<ProviderClient>(Service::Surroundings{store, journal, answers})),
      remoteLog(std::make_shared<Logger>(std::move(remoteSink), journal)),
      consoleLog(std::make_shared<Logger>(std::move(consoleSink))) {}

std::shared_ptr<const HLVSDKConstants> SandboxHost::constants() { return sandboxConstants(); }

std::shared_ptr<HLVSDKGuest> SandboxHost::currentGuest() { return parts_->guests->signedIn(); }

NullableString SandboxHost::cardBrandFromNumber(const NullableString& number) {
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

std::shared_ptr<HLVSDKUpdateGuestRequestInfo> SandboxHost::makeUpdateGuestRequestInfo() {
  return std::make_shared<UpdateGuestRequest>();
}

void SandboxHost::handleAssertWithMessage(const NullableString& message) {
  report(message.value_or("(no message)"));
}

void SandboxHost::handleParameterAssert(const NullableString& parameter,
                                        const NullableString& message) {
  report(parameter.value_or("(no name)") + (message ? ": " + *message : ""));
}

void SandboxHost::report(const std::string& assertion) {
  parts_->journal->record("kit", "assert", assertion);
  parts_->consoleLog->write(1, "Assertion: " + assertion);
}

std::shared_ptr<HLVSDKAddCreditCardRequestInfo::Body> SandboxHost::makeAddCreditCardRequestBody(
    const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) {
  return std::make_shared<AddCardBody>(instrument, address);
}

std::shared_ptr<HLVSession> SandboxHost::activeSession() {
  const auto email = parts_->store->readOrNothing(backend::signedInEmail);
  return email ? std::make_shared<Session>(*email, parts_->store) : nullptr;
}

std::shared_ptr<HLVErrorFacade> SandboxHost::makeErrorFacade() {
  return std::make_shared<ErrorFacade>();
}

std::shared_ptr<PLVCreditCardPaymentInstrument> SandboxHost::makeCreditCardPaymentInstrument(
    const NullableString& pan, const NullableString& expiryMonth, const NullableString& expiryYear,
    const NullableString& cvv, const NullableString& cardHolder) {
  CardFields fields;
  fields.pan = pan.value_or("");
  fields.expiryMonth = expiryMonth.value_or("");
  fields.expiryYear = expiryYear.value_or("");
  fields.cvv = cvv.value_or("");
  fields.cardHolder = cardHolder.value_or("");
  return std::make_shared<NewInstrument>(EnteredCard::make(std::move(fields)));
}

}  // namespace hlv::sandbox
