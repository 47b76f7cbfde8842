// The host's half of an add-card request, and the request that the host gets to see.
//
// Threading: one thread at a time.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKAddPaylevenCreditCardRequestInfo.h>

#include <memory>

#include "Models/HLVSDKAddPaylevenCreditCardRequestInfo.h"

/// What the kit's request inherits from the host's class, past its own overriding methods.
@interface HLVSDKAddPaylevenCreditCardRequestInfo (HostHalf)
- (instancetype)initHostHalfWithPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                                   billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress;
/// Takes the core's request over, which keeps this object no longer.
- (void)setCoreRequest:(std::shared_ptr<hlv::HLVSDKAddPaylevenCreditCardRequestInfo>)request;
- (NSDictionary*)hostJSONRepresentation;
- (BOOL)isHostHalfValid:(NSError**)error;
@end

namespace hlv::objc {

/// Asks the request's base class.
class RequestBody final : public HLVSDKAddCreditCardRequestInfo::Body {
 public:
  enum class Keeps { nothing, request };

  /// Either keeps the request alive, or is told when it goes.
  RequestBody(::HLVSDKAddPaylevenCreditCardRequestInfo* request, Keeps keeps);
  ~RequestBody() override;

  void setProvider(std::int64_t provider) override;
  Dictionary JSONRepresentation() const override;
  bool isValid(ErrorPtr* error) const override;

  /// The request, which from now on keeps this and not the other way round. Lives as long as its
  /// pool.
  ::HLVSDKAddPaylevenCreditCardRequestInfo* letGoOfRequest();
  void requestIsGone() { request_ = nil; }

 private:
  ::HLVSDKAddPaylevenCreditCardRequestInfo* request_;
  Keeps keeps_;
};

/// The request as the host's backend client gets it. Lives as long as its pool.
::HLVSDKAddCreditCardRequestInfo* handOut(
    const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& request);

}  // namespace hlv::objc
