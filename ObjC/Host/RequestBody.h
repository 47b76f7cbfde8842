// The host's half of an add-card request, and the request that the host gets to see.
//
// Threading: one thread at a time.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKAddPaylevenCreditCardRequestInfo.h>

#include <cstdint>
#include <memory>
#include <utility>

#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"
#include "Models/HLVSDKAddPaylevenCreditCardRequestInfo.h"
#include "ObjC/Binding/Crossing.h"
#include "ObjC/Binding/Values.h"

namespace hlv::objc {

/// What the Objective-C request is made of, once the core hands it out.
class RequestBody final : public HLVSDKAddCreditCardRequestBody {
 public:
  RequestBody(std::shared_ptr<HLVSDKPaymentInstrument> instrument,
              std::shared_ptr<HLVSDKPaymentBillingAddress> address)
      : instrument_(std::move(instrument)), address_(std::move(address)) {}

  /// The object marks itself.
  void setProvider(std::int64_t) override {}
  Dictionary JSONRepresentation() const override {
    return fromNSDictionary([requestWithToken(std::nullopt) JSONRepresentation]);
  }
  bool isValid(ErrorPtr* error) const override {
    NSError* reason = nil;
    const bool valid = [requestWithToken(std::nullopt) isValid:&reason];
    if (error && reason) *error = fromNSError(reason);
    return valid;
  }

  /// A new request; nil when the host base makes no object. Lives as long as its pool.
  ::HLVSDKAddPaylevenCreditCardRequestInfo* requestWithToken(const NullableString& token) const {
    return [[[::HLVSDKAddPaylevenCreditCardRequestInfo alloc]
        initWithPaymentInstrument:original(instrument_)
                   billingAddress:original(address_)
                    paylevenToken:toNSString(token)] autorelease];
  }

 private:
  const std::shared_ptr<HLVSDKPaymentInstrument> instrument_;
  const std::shared_ptr<HLVSDKPaymentBillingAddress> address_;
};

/// The request as the host's backend client gets it. Lives as long as its pool.
inline ::HLVSDKAddCreditCardRequestInfo* handOut(
    const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& request) {
  const auto kitRequest =
      std::dynamic_pointer_cast<HLVSDKAddPaylevenCreditCardRequestInfo>(request);
  if (!kitRequest) return nil;
  const auto* body = dynamic_cast<const RequestBody*>(kitRequest->body().get());
  return body ? body->requestWithToken(kitRequest->paylevenToken()) : nil;
}

}  // namespace hlv::objc
