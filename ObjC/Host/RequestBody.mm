#include "ObjC/Host/RequestBody.h"

#include <utility>

#include "ObjC/Binding/Crossing.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Host/Records.h"

namespace hlv::objc {

RequestBody::RequestBody(std::shared_ptr<HLVSDKPaymentInstrument> instrument,
                         std::shared_ptr<HLVSDKPaymentBillingAddress> address)
    : instrument_(std::move(instrument)), address_(std::move(address)) {}

Dictionary RequestBody::JSONRepresentation() const {
  return fromNSDictionary([requestWithToken(std::nullopt) JSONRepresentation]);
}

bool RequestBody::isValid(ErrorPtr* error) const {
  NSError* reason = nil;
  const bool valid = [requestWithToken(std::nullopt) isValid:&reason];
  if (error && reason) *error = fromNSError(reason);
  return valid;
}

::HLVSDKAddPaylevenCreditCardRequestInfo* RequestBody::requestWithToken(
    const NullableString& token) const {
  return [[[::HLVSDKAddPaylevenCreditCardRequestInfo alloc]
      initWithPaymentInstrument:original(instrument_)
                 billingAddress:original(address_)
                  paylevenToken:toNSString(token)] autorelease];
}

::HLVSDKAddCreditCardRequestInfo* handOut(
    const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& request) {
  const auto kitRequest =
      std::dynamic_pointer_cast<HLVSDKAddPaylevenCreditCardRequestInfo>(request);
  if (!kitRequest) return nil;
  const auto* body = dynamic_cast<const RequestBody*>(kitRequest->body().get());
  return body ? body->requestWithToken(kitRequest->paylevenToken()) : nil;
}

}  // namespace hlv::objc
