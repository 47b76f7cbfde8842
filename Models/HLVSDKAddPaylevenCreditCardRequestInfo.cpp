#include "Models/HLVSDKAddPaylevenCreditCardRequestInfo.h"

#include <utility>

#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "Host/Halvo_Meta/HLVUtilities.h"
#include "Values/Send.h"

namespace hlv {

std::shared_ptr<HLVSDKAddPaylevenCreditCardRequestInfo>
HLVSDKAddPaylevenCreditCardRequestInfo::initWithPaymentInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address, NullableString paylevenToken) {
  auto body = makeBody(instrument, address);
  if (!body) return nullptr;
  // There is no public constructor; what is made here takes one allocation all the same.
  struct Made final : HLVSDKAddPaylevenCreditCardRequestInfo {
    explicit Made(std::shared_ptr<Body> made)
        : HLVSDKAddPaylevenCreditCardRequestInfo(std::move(made)) {}
  };
  auto request = std::make_shared<Made>(std::move(body));
  request->setPaylevenToken(std::move(paylevenToken));
  request->setProvider(0);
  return request;
}

HLVSDKAddPaylevenCreditCardRequestInfo::HLVSDKAddPaylevenCreditCardRequestInfo(
    std::shared_ptr<Body> body)
    : HLVSDKAddCreditCardRequestInfo(std::move(body)) {}

NullableString HLVSDKAddPaylevenCreditCardRequestInfo::paylevenToken() const {
  return paylevenToken_;
}

void HLVSDKAddPaylevenCreditCardRequestInfo::setPaylevenToken(NullableString token) {
  paylevenToken_ = std::move(token);
}

Dictionary HLVSDKAddPaylevenCreditCardRequestInfo::JSONRepresentation() const {
  Dictionary body = HLVSDKAddCreditCardRequestInfo::JSONRepresentation();
  const Dictionary* hostCard = valueForKey(body, "credit_card").dictionary();
  if (!hostCard) return body;

  Dictionary card = *hostCard;
  HLVUtilities::dictionary(card, paylevenToken_, "plv_token");
  HLVUtilities::dictionary(body, std::move(card), "credit_card");
  return body;
}

bool HLVSDKAddPaylevenCreditCardRequestInfo::isValid(ErrorPtr* error) const {
  if (!HLVSDKAddCreditCardRequestInfo::isValid(error)) return false;
  if (length(paylevenToken_) > 0) return true;
  HLVUtilities::error(error,
                      send(HLVErrorFacade::make(), &HLVErrorFacade::invalidArgumentErrorWithName,
                           "paylevenToken", paylevenToken_, std::nullopt));
  return false;
}

}  // namespace hlv
