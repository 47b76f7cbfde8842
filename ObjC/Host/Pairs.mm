#include "ObjC/Host/Pairs.h"

#include "ObjC/Host/Records.h"

namespace hlv::objc {

id crossing(const std::shared_ptr<HLVSDKPLVPaymentInstrument>& pair) {
  if (!pair) return nil;
  return [[[::HLVSDKPLVPaymentInstrument alloc]
      initWithPaymentInstrument:original(pair->paymentInstrument())
                        useCase:toNSString(pair->useCase())] autorelease];
}

std::shared_ptr<HLVSDKPLVPaymentInstrument> corePair(::HLVSDKPLVPaymentInstrument* pair) {
  if (!pair) return nullptr;
  return HLVSDKPLVPaymentInstrument::initWithPaymentInstrument(
      adapted<Instrument>([pair paymentInstrument]), fromNSString([pair useCase]));
}

NullableList<HLVSDKPLVPaymentInstrument> corePairs(NSArray* pairs, NSError* error) {
  if (error) return std::nullopt;
  List<HLVSDKPLVPaymentInstrument> list([pairs count]);
  auto place = list.begin();
  for (::HLVSDKPLVPaymentInstrument* pair in pairs) *place++ = corePair(pair);
  return list;
}

}  // namespace hlv::objc
