#import <HLVSDKPaylevenKit/HLVSDKAddPaylevenCreditCardRequestInfo.h>

#include <utility>

#include "ObjC/Binding/Crossing.h"
#include "ObjC/Binding/Install.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Host/RequestBody.h"

using hlv::objc::RequestBody;

struct HLVRequestCore {
  /// Null until the core hands the request out.
  std::shared_ptr<hlv::HLVSDKAddPaylevenCreditCardRequestInfo> kit;
};

namespace {

/// The core's request over an object that is there already.
struct RequestOver final : hlv::HLVSDKAddPaylevenCreditCardRequestInfo {
  explicit RequestOver(::HLVSDKAddPaylevenCreditCardRequestInfo* object)
      : hlv::HLVSDKAddPaylevenCreditCardRequestInfo(
            std::make_shared<RequestBody>(object, RequestBody::Keeps::nothing)) {}
};

}  // namespace

@implementation HLVSDKAddPaylevenCreditCardRequestInfo

+ (void)initialize {
  hlv::objc::install();
}

- (instancetype)initHostHalfWithPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                                   billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress {
  self = [super initWithPaymentInstrument:paymentInstrument billingAddress:billingAddress];
  if (self) _core = new HLVRequestCore;
  return self;
}

- (instancetype)initWithPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                           billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                            paylevenToken:(NSString*)paylevenToken {
  self = [self initHostHalfWithPaymentInstrument:paymentInstrument billingAddress:billingAddress];
  if (self) {
    _core->kit = std::make_shared<RequestOver>(self);
    [self setPaylevenToken:paylevenToken];
    [self setProvider:0];
  }
  return self;
}

- (instancetype)initWithPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                           billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress {
  return [self initWithPaymentInstrument:paymentInstrument
                          billingAddress:billingAddress
                           paylevenToken:nil];
}

- (void)dealloc {
  if (_core && _core->kit) dynamic_cast<RequestBody&>(*_core->kit->body()).requestIsGone();
  delete _core;
  [super dealloc];
}

- (void)setCoreRequest:(std::shared_ptr<hlv::HLVSDKAddPaylevenCreditCardRequestInfo>)request {
  _core->kit = std::move(request);
}

- (NSString*)paylevenToken {
  return _core->kit ? hlv::objc::toNSString(_core->kit->paylevenToken()) : nil;
}

- (void)setPaylevenToken:(NSString*)paylevenToken {
  if (_core->kit) _core->kit->setPaylevenToken(hlv::objc::fromNSString(paylevenToken));
}

- (NSDictionary*)hostJSONRepresentation {
  return [super JSONRepresentation];
}

- (NSDictionary*)JSONRepresentation {
  if (!_core || !_core->kit) return [super JSONRepresentation];
  return hlv::objc::toNSDictionary(_core->kit->JSONRepresentation());
}

- (BOOL)isHostHalfValid:(NSError**)error {
  return [super isValid:error];
}

- (BOOL)isValid:(NSError**)error {
  if (!_core || !_core->kit) return [super isValid:error];
  hlv::ErrorPtr reason;
  const bool valid = _core->kit->isValid(error ? &reason : nullptr);
  if (error && reason) *error = hlv::objc::toNSError(reason);
  return valid;
}

@end
