// Pairs of an instrument and its use case, as the core keeps them.
#import <HLVSDKPaylevenKit/HLVSDKPLVPaymentInstrument.h>

#include "Models/HLVSDKPLVPaymentInstrument.h"
#include "ObjC/Host/Records.h"

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
