#include "ObjC/Sandbox/SandboxBillingAddress.h"

using hlv::sandbox::objc::text;

@implementation HLVSDKPaymentBillingAddress

- (NSString*)countryCode {
  return text(self, &hlv::HLVSDKPaymentBillingAddress::countryCode);
}

- (NSString*)street {
  return text(self, &hlv::HLVSDKPaymentBillingAddress::street);
}

- (NSString*)city {
  return text(self, &hlv::HLVSDKPaymentBillingAddress::city);
}

- (NSString*)zip {
  return text(self, &hlv::HLVSDKPaymentBillingAddress::zip);
}

- (NSString*)businessName {
  return text(self, &hlv::HLVSDKPaymentBillingAddress::businessName);
}

@end

@implementation SandboxBillingAddress

- (instancetype)initWithAddress:(const std::shared_ptr<hlv::sandbox::EnteredAddress>&)address {
  if ((self = [super init])) _address = new std::shared_ptr<hlv::sandbox::EnteredAddress>(address);
  return self;
}

- (void)dealloc {
  delete _address;
  [super dealloc];
}

- (std::shared_ptr<hlv::Object>)sandboxObject {
  return *_address;
}

@end
