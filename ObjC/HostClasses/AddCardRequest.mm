#include "Host/HLVSDKCoreKit/HLVSDKPaymentBillingAddress.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrument.h"
#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"
#include "ObjC/Binding/Held.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/HostClasses/Records.h"
#include "Values/Send.h"

using hlv::objc::toNSDictionary;
using hlv::objc::toNSError;
using hlv::host_classes::behind;
using hlv::host_classes::playedHost;
using Body = hlv::HLVSDKAddCreditCardRequestBody;

@interface HLVSDKAddCreditCardRequestInfo (HLVCoreObject) <HLVCoreObject>
@end

@implementation HLVSDKAddCreditCardRequestInfo

- (instancetype)initWithPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                           billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress {
  auto body = hlv::send(playedHost(), &hlv::Host::makeAddCreditCardRequestBody,
                        behind<hlv::HLVSDKPaymentInstrument>(paymentInstrument),
                        behind<hlv::HLVSDKPaymentBillingAddress>(billingAddress));
  if ((self = [super init])) {
    if (!body) {
      [self release];
      return nil;
    }
    _storage = new std::shared_ptr<Body>(std::move(body));
  }
  return self;
}

- (void)dealloc {
  delete static_cast<std::shared_ptr<Body>*>(_storage);
  [super dealloc];
}

- (std::shared_ptr<hlv::Object>)coreObject {
  if (!_storage) return nullptr;
  return *static_cast<std::shared_ptr<Body>*>(_storage);
}

- (void)setProvider:(NSInteger)provider {
  if (const auto body = behind<Body>(self)) body->setProvider(provider);
}

- (NSDictionary<NSString*, id>*)JSONRepresentation {
  const auto body = behind<Body>(self);
  return body ? toNSDictionary(body->JSONRepresentation()) : nil;
}

- (BOOL)isValid:(NSError**)error {
  hlv::ErrorPtr problem;
  const bool valid = hlv::send(behind<Body>(self), &Body::isValid, &problem);
  if (error && !valid) *error = toNSError(problem);
  return valid;
}

@end

namespace hlv::host_classes {
namespace {

class ForwardedRequest final : public hlv::HLVSDKAddCreditCardRequestInfo, public hlv::objc::Held {
 public:
  ForwardedRequest(std::shared_ptr<Body> body, ::HLVSDKAddCreditCardRequestInfo* request)
      : hlv::HLVSDKAddCreditCardRequestInfo(std::move(body)), Held(request) {}

  void setProvider(std::int64_t provider) override {
    [request() setProvider:static_cast<NSInteger>(provider)];
  }
  Dictionary JSONRepresentation() const override {
    return hlv::objc::fromNSDictionary([request() JSONRepresentation]);
  }
  bool isValid(ErrorPtr* error) const override {
    NSError* problem = nil;
    const bool valid = [request() isValid:&problem];
    if (error && !valid) *error = hlv::objc::fromNSError(problem);
    return valid;
  }

 private:
  ::HLVSDKAddCreditCardRequestInfo* request() const { return held(); }
};

}  // namespace

std::shared_ptr<hlv::HLVSDKAddCreditCardRequestInfo> forwarded(
    ::HLVSDKAddCreditCardRequestInfo* request) {
  auto body = behind<Body>(request);
  return body ? std::make_shared<ForwardedRequest>(std::move(body), request) : nullptr;
}

}  // namespace hlv::host_classes
