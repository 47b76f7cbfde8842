#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentFinder.h>

#include "Matching/HLVSDKPaylevenPaymentInstrumentFinder.h"
#include "ObjC/Host/Install.h"
#include "ObjC/Host/Records.h"

using hlv::objc::adapted;
using hlv::objc::asCore;
using hlv::objc::fromNSString;
using hlv::objc::original;
using Finder = hlv::HLVSDKPaylevenPaymentInstrumentFinder;
using Instruments = hlv::objc::As<hlv::NullableList<hlv::PLVCreditCardPaymentInstrument>>;

@implementation HLVSDKPaylevenPaymentInstrumentFinder

+ (void)initialize {
  hlv::objc::install();
}

+ (PLVCreditCardPaymentInstrument*)findPaylevenPaymentInstrumentIn:(NSArray*)paylevenInstruments
                                             matchesLastFourDigits:(NSString*)lastFourDigits
                                                          andBrand:(NSString*)brand {
  return original(
      Finder::findPaylevenPaymentInstrumentIn(asCore(paylevenInstruments, Instruments()),
                                              fromNSString(lastFourDigits), fromNSString(brand)));
}

+ (PLVCreditCardPaymentInstrument*)findPaylevenPaymentInstrumentIn:(NSArray*)paylevenInstruments
                                     matchesHalvoPaymentInstrument:
                                         (HLVSDKPaymentInstrument*)halvoInstrument {
  return original(
      Finder::findPaylevenPaymentInstrumentIn(asCore(paylevenInstruments, Instruments()),
                                              adapted<hlv::objc::EnteredCard>(halvoInstrument)));
}

@end
