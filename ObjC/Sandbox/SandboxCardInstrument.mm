#include "ObjC/Sandbox/SandboxCardInstrument.h"

#include "ObjC/Sandbox/OpenSandbox.h"
#include "ObjC/Sandbox/TypedText.h"
#include "Values/Send.h"

using hlv::objc::fromNSString;
using hlv::sandbox::objc::asObject;
using hlv::sandbox::objc::behind;
using hlv::sandbox::objc::openHost;
using hlv::sandbox::objc::text;
using hlv::sandbox::objc::TypedText;

@implementation PLVPaymentInstrument

+ (PLVCreditCardPaymentInstrument*)createCreditCardPaymentInstrumentWithPan:(NSString*)pan
                                                                expiryMonth:(NSString*)expiryMonth
                                                                 expiryYear:(NSString*)expiryYear
                                                                        cvv:(NSString*)cvv
                                                              andCardHolder:(NSString*)cardHolder {
  const TypedText number(pan);
  const TypedText code(cvv);
  return asObject(hlv::send(openHost(), &hlv::Host::makeCreditCardPaymentInstrument, number.text(),
                            fromNSString(expiryMonth), fromNSString(expiryYear), code.text(),
                            fromNSString(cardHolder)));
}

@end

@implementation PLVCreditCardPaymentInstrument

- (NSString*)identifier {
  return text(self, &hlv::PLVCreditCardPaymentInstrument::identifier);
}

- (NSString*)pan {
  return text(self, &hlv::PLVCreditCardPaymentInstrument::pan);
}

- (NSString*)cardBrand {
  return text(self, &hlv::PLVCreditCardPaymentInstrument::cardBrand);
}

- (NSString*)expiryMonth {
  return text(self, &hlv::PLVCreditCardPaymentInstrument::expiryMonth);
}

- (NSString*)expiryYear {
  return text(self, &hlv::PLVCreditCardPaymentInstrument::expiryYear);
}

- (NSUInteger)state {
  return hlv::send(behind<hlv::PLVCreditCardPaymentInstrument>(self),
                   &hlv::PLVCreditCardPaymentInstrument::state);
}

@end

@implementation SandboxCardInstrument

- (instancetype)initWithInstrument:
    (const std::shared_ptr<hlv::PLVCreditCardPaymentInstrument>&)instrument {
  if ((self = [super init])) {
    _instrument = new std::shared_ptr<hlv::PLVCreditCardPaymentInstrument>(instrument);
  }
  return self;
}

- (void)dealloc {
  delete _instrument;
  [super dealloc];
}

- (std::shared_ptr<hlv::Object>)sandboxObject {
  return *_instrument;
}

@end

namespace hlv::sandbox::objc {

::PLVCreditCardPaymentInstrument* asObject(
    const std::shared_ptr<hlv::PLVCreditCardPaymentInstrument>& instrument) {
  if (!instrument) return nil;
  return [[[SandboxCardInstrument alloc] initWithInstrument:instrument] autorelease];
}

}  // namespace hlv::sandbox::objc
