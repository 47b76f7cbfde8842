#include "Sandbox/Backend/Requests.h"

#include "Host/Halvo_Meta/HLVUtilities.h"
#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Cards/EnteredCard.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Errors/ErrorFacade.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/Records/AddressKeys.h"
#include "Values/Send.h"
#include "Values/Wiped.h"

namespace hlv::sandbox {
namespace {

NullableString externalIdentifierOf(const std::shared_ptr<HLVSDKPaymentInstrument>& card) {
  const auto entered = std::dynamic_pointer_cast<EnteredCard>(card);
  return entered ? entered->externalIdentifier() : std::nullopt;
}

Dictionary writeAddress(const HLVSDKPaymentBillingAddress& address) {
  Dictionary fields;
  HLVUtilities::dictionary(fields, address.street(), addressKeys::street);
  HLVUtilities::dictionary(fields, address.city(), addressKeys::city);
  HLVUtilities::dictionary(fields, address.countryCode(), addressKeys::countryCode);
  HLVUtilities::dictionary(fields, address.zip(), addressKeys::zip);
  HLVUtilities::dictionary(fields, address.businessName(), addressKeys::businessName);
  return fields;
}

ErrorPtr invalidRequest(const std::string& sentence) {
  return SandboxError::make(backendErrorDomain, BackendErrorCode::invalidRequest, sentence);
}

}  // namespace

AddCardRequest::AddCardRequest(const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& request) {
  if (!request) {
    problem = invalidRequest("There is no request to add a card.");
  } else if (request->isValid(&problem)) {
    body = request->JSONRepresentation();
  } else if (!problem) {
    problem = invalidRequest("The request to add a card is not valid.");
  }
}

NullableString AddCardRequest::useCase() const {
  const auto* card = valueForKey(body, "credit_card").dictionary();
  const auto* useCase = card ? valueForKey(*card, "use_case").string() : nullptr;
  return useCase ? NullableString(*useCase) : std::nullopt;
}

Dictionary AddCardBody::JSONRepresentation() const {
  Dictionary card;
  const auto put = [&card](const char* key, const NullableString& text) {
    HLVUtilities::dictionary(card, text, key);
  };
  if (auto pan = send(card_, &HLVSDKPaymentInstrument::pan)) {
    const Wiped number(*pan);
    put("last_four_digits", lastFourDigits(*pan));
    if (const auto* brand = findCardBrand(*pan)) put("brand", std::string(brand->name));
  }
  put("use_case", send(card_, &HLVSDKPaymentInstrument::instrumentUseCaseString));
  put("external_identifier", externalIdentifierOf(card_));
  put("card_holder", send(card_, &HLVSDKPaymentInstrument::cardHolder));
  put("expiry_month", send(card_, &HLVSDKPaymentInstrument::expiryMonth));
  put("expiry_year", send(card_, &HLVSDKPaymentInstrument::expiryYear));
  if (address_) card.insert_or_assign("billing_address", writeAddress(*address_));
  return {{"credit_card", std::move(card)}, {"provider", provider_}};
}

bool AddCardBody::isValid(ErrorPtr* error) const {
  const auto refuse = [error](const ErrorPtr& problem) {
    HLVUtilities::error(error, problem);
    return false;
  };
  ErrorFacade errors;
  if (!card_) {
    return refuse(
        errors.invalidArgumentErrorWithName("paymentInstrument", std::nullopt, std::nullopt));
  }
  if (!std::dynamic_pointer_cast<EnteredCard>(card_)) {
    return refuse(errors.invalidArgumentErrorWithName(
        "paymentInstrument", "(an object)",
        "The sandbox registers cards of its own class only, hlv::sandbox::EnteredCard."));
  }
  const auto identifier = externalIdentifierOf(card_);
  if (length(identifier) == 0) {
    return refuse(
        errors.invalidArgumentErrorWithName("externalIdentifier", identifier, std::nullopt));
  }
  return true;
}

}  // namespace hlv::sandbox
