#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"

#include <utility>

#include "Host/Host.h"

namespace hlv {

std::shared_ptr<HLVSDKAddCreditCardRequestInfo>
HLVSDKAddCreditCardRequestInfo::initWithPaymentInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) {
  auto body = makeBody(instrument, address);
  if (!body) return nullptr;
  return std::shared_ptr<HLVSDKAddCreditCardRequestInfo>(
      new HLVSDKAddCreditCardRequestInfo(std::move(body)));
}

std::shared_ptr<HLVSDKAddCreditCardRequestBody> HLVSDKAddCreditCardRequestInfo::makeBody(
    const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address) {
  return Host::ask(&Host::makeAddCreditCardRequestBody, instrument, address);
}

HLVSDKAddCreditCardRequestInfo::HLVSDKAddCreditCardRequestInfo(std::shared_ptr<Body> body)
    : body_(std::move(body)) {}

void HLVSDKAddCreditCardRequestInfo::setProvider(std::int64_t provider) {
  body_->setProvider(provider);
}

Dictionary HLVSDKAddCreditCardRequestInfo::JSONRepresentation() const {
  return body_->JSONRepresentation();
}

bool HLVSDKAddCreditCardRequestInfo::isValid(ErrorPtr* error) const {
  return body_->isValid(error);
}

}  // namespace hlv
