#include "ObjC/Sandbox/SandboxCreditCard.h"

#include "ObjC/Sandbox/OpenSandbox.h"
#include "ObjC/Sandbox/TypedText.h"
#include "Values/Send.h"

using hlv::objc::toNSString;
using hlv::sandbox::objc::openHost;
using hlv::sandbox::objc::text;
using hlv::sandbox::objc::TypedText;

@implementation HLVSDKCreditCard

+ (NSString*)cardBrandFromNumber:(NSString*)number {
  const TypedText digits(number);
  return toNSString(hlv::send(openHost(), &hlv::Host::cardBrandFromNumber, digits.text()));
}

- (NSString*)halvoID {
  return text(self, &hlv::HLVSDKCreditCard::halvoID);
}

- (NSString*)lastFourDigits {
  return text(self, &hlv::HLVSDKCreditCard::lastFourDigits);
}

- (NSString*)brand {
  return text(self, &hlv::HLVSDKCreditCard::brand);
}

- (NSString*)useCase {
  return text(self, &hlv::HLVSDKCreditCard::useCase);
}

- (NSString*)externalIdentifier {
  return text(self, &hlv::HLVSDKCreditCard::externalIdentifier);
}

@end

@implementation SandboxCreditCard

- (instancetype)initWithCard:(const std::shared_ptr<hlv::HLVSDKCreditCard>&)card {
  if ((self = [super init])) _card = new std::shared_ptr<hlv::HLVSDKCreditCard>(card);
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

namespace hlv::sandbox::objc {

::HLVSDKCreditCard* asObject(const std::shared_ptr<hlv::HLVSDKCreditCard>& card) {
  return card ? [[[SandboxCreditCard alloc] initWithCard:card] autorelease] : nil;
}

}  // namespace hlv::sandbox::objc
