#include "ObjC/Sandbox/SandboxPaymentInstrument.h"

#include "ObjC/Binding/Errors.h"
#include "Values/Send.h"

using hlv::objc::fromNSString;
using hlv::objc::toNSError;
using hlv::sandbox::objc::behind;
using hlv::sandbox::objc::text;

@implementation HLVSDKPaymentInstrument

- (NSString*)pan {
  return text(self, &hlv::HLVSDKPaymentInstrument::pan);
}

- (NSString*)expiryMonth {
  return text(self, &hlv::HLVSDKPaymentInstrument::expiryMonth);
}

- (NSString*)expiryYear {
  return text(self, &hlv::HLVSDKPaymentInstrument::expiryYear);
}

- (NSString*)cvv {
  return text(self, &hlv::HLVSDKPaymentInstrument::cvv);
}

- (NSString*)cardHolder {
  return text(self, &hlv::HLVSDKPaymentInstrument::cardHolder);
}

- (NSString*)instrumentUseCaseString {
  return text(self, &hlv::HLVSDKPaymentInstrument::instrumentUseCaseString);
}

- (BOOL)isValid:(NSError**)error {
  hlv::ErrorPtr problem;
  const bool valid = hlv::send(behind<hlv::HLVSDKPaymentInstrument>(self),
                               &hlv::HLVSDKPaymentInstrument::isValid, &problem);
  if (error && !valid) *error = toNSError(problem);
  return valid;
}

- (void)setExternalIdentifier:(NSString*)externalIdentifier {
  if (const auto card = behind<hlv::HLVSDKPaymentInstrument>(self)) {
    card->setExternalIdentifier(fromNSString(externalIdentifier));
  }
}

@end

@implementation SandboxPaymentInstrument

- (instancetype)initWithCard:(const std::shared_ptr<hlv::sandbox::EnteredCard>&)card {
  if ((self = [super init])) _card = new std::shared_ptr<hlv::sandbox::EnteredCard>(card);
  return self;
}

- (void)dealloc {
  delete _card;
  [super dealloc];
}

- (std::shared_ptr<hlv::Object>)sandboxObject {
  return *_card;
}

@end
