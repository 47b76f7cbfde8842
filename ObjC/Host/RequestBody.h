// The host's half of an add-card request, and the request that the host gets to see.
//
// Threading: one thread at a time.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKAddPaylevenCreditCardRequestInfo.h>

#include <cstdint>
#include <memory>

#include "Models/HLVSDKAddPaylevenCreditCardRequestInfo.h"

namespace hlv::objc {

/// What the Objective-C request is made of, once the core hands it out.
class RequestBody final : public HLVSDKAddCreditCardRequestInfo::Body {
 public:
  RequestBody(std::shared_ptr<HLVSDKPaymentInstrument> instrument,
              std::shared_ptr<HLVSDKPaymentBillingAddress> address);

  /// The object marks itself.
  void setProvider(std::int64_t) override {}
  Dictionary JSONRepresentation() const override;
  bool isValid(ErrorPtr* error) const override;

  /// A new request; nil when the host base makes no object. Lives as long as its pool.
  ::HLVSDKAddPaylevenCreditCardRequestInfo* requestWithToken(const NullableString& token) const;

 private:
  const std::shared_ptr<HLVSDKPaymentInstrument> instrument_;
  const std::shared_ptr<HLVSDKPaymentBillingAddress> address_;
};

/// The request as the host's backend client gets it. Lives as long as its pool.
::HLVSDKAddCreditCardRequestInfo* handOut(
    const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& request);

}  // namespace hlv::objc
