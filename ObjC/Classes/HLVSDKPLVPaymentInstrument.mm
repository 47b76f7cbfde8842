#import <HLVSDKPaylevenKit/HLVSDKPLVPaymentInstrument.h>

#include "Models/HLVSDKPLVPaymentInstrument.h"
#include "ObjC/Host/Records.h"

@implementation HLVSDKPLVPaymentInstrument

@synthesize useCase = _useCase, paymentInstrument = _paymentInstrument;

- (instancetype)initWithPaymentInstrument:(PLVCreditCardPaymentInstrument*)paymentInstrument
                                  useCase:(NSString*)useCase {
  if ((self = [super init])) {
    [self setPaymentInstrument:paymentInstrument];
    [self setUseCase:useCase];
  }
  return self;
}

- (instancetype)init {
  return [self initWithPaymentInstrument:nil useCase:nil];
}

- (void)dealloc {
  [_useCase release];
  [_paymentInstrument release];
  [super dealloc];
}

@end

namespace hlv::objc {

id crossing(const std::shared_ptr<HLVSDKPLVPaymentInstrument>& pair) {
  if (!pair) return nil;
  return [[[::HLVSDKPLVPaymentInstrument alloc]
      initWithPaymentInstrument:original(pair->paymentInstrument())
                        useCase:toNSString(pair->useCase())] autorelease];
}

std::shared_ptr<HLVSDKPLVPaymentInstrument> asCore(
    id pair, As<std::shared_ptr<HLVSDKPLVPaymentInstrument>>) {
  if (!pair) return nullptr;
  return HLVSDKPLVPaymentInstrument::initWithPaymentInstrument(
      adapted<Instrument>([pair paymentInstrument]), fromNSString([pair useCase]));
}

}  // namespace hlv::objc
