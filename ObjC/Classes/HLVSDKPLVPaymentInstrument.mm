#import <HLVSDKPaylevenKit/HLVSDKPLVPaymentInstrument.h>

#include "Models/HLVSDKPLVPaymentInstrument.h"
#include "ObjC/Host/Records.h"

@implementation HLVSDKPLVPaymentInstrument

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

- (NSString*)useCase {
  return [[_useCase retain] autorelease];
}

- (void)setUseCase:(NSString*)useCase {
  NSString* const before = _useCase;
  _useCase = [useCase copy];
  [before release];
}

- (PLVCreditCardPaymentInstrument*)paymentInstrument {
  return [[_paymentInstrument retain] autorelease];
}

- (void)setPaymentInstrument:(PLVCreditCardPaymentInstrument*)paymentInstrument {
  PLVCreditCardPaymentInstrument* const before = _paymentInstrument;
  _paymentInstrument = [paymentInstrument retain];
  [before release];
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
