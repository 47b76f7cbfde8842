#import <HLVSDKPaylevenKit/HLVSDKPLVPaymentInstrument.h>

#include "ObjC/Binding/Crossing.h"
#include "ObjC/Classes/Cores.h"
#include "ObjC/Host/Records.h"

struct HLVInstrumentPairCore {
  std::shared_ptr<hlv::HLVSDKPLVPaymentInstrument> kit;
};

@implementation HLVSDKPLVPaymentInstrument

std::shared_ptr<hlv::HLVSDKPLVPaymentInstrument> HLVCoreOf(HLVSDKPLVPaymentInstrument* object) {
  return object ? object->_core->kit : nullptr;
}

- (instancetype)initWithCore:(std::shared_ptr<hlv::HLVSDKPLVPaymentInstrument>)pair {
  if ((self = [super init])) _core = new HLVInstrumentPairCore{std::move(pair)};
  return self;
}

- (instancetype)initWithPaymentInstrument:(PLVCreditCardPaymentInstrument*)paymentInstrument
                                  useCase:(NSString*)useCase {
  return [self initWithCore:hlv::HLVSDKPLVPaymentInstrument::initWithPaymentInstrument(
                                hlv::objc::adapted<hlv::objc::Instrument>(paymentInstrument),
                                hlv::objc::fromNSString(useCase))];
}

- (instancetype)init {
  return [self initWithPaymentInstrument:nil useCase:nil];
}

- (void)dealloc {
  delete _core;
  [super dealloc];
}

- (NSString*)useCase {
  return hlv::objc::toNSString(_core->kit->useCase());
}

- (void)setUseCase:(NSString*)useCase {
  _core->kit->setUseCase(hlv::objc::fromNSString(useCase));
}

- (PLVCreditCardPaymentInstrument*)paymentInstrument {
  return hlv::objc::original(_core->kit->paymentInstrument());
}

- (void)setPaymentInstrument:(PLVCreditCardPaymentInstrument*)paymentInstrument {
  _core->kit->setPaymentInstrument(hlv::objc::adapted<hlv::objc::Instrument>(paymentInstrument));
}

@end

namespace hlv::objc {

id crossing(const std::shared_ptr<HLVSDKPLVPaymentInstrument>& pair) {
  if (!pair) return nil;
  return [[[::HLVSDKPLVPaymentInstrument alloc] initWithCore:pair] autorelease];
}

}  // namespace hlv::objc
