#import <HLVSDKPaylevenKit/HLVSDKPaylevenPaymentInstrumentFinder.h>

#include "Matching/HLVSDKPaylevenPaymentInstrumentFinder.h"
#include "ObjC/Binding/Crossing.h"
#include "ObjC/Host/Install.h"
#include "ObjC/Host/Records.h"

using hlv::objc::adapted;
using hlv::objc::adaptedList;
using hlv::objc::fromNSString;
using hlv::objc::original;
using Finder = hlv::HLVSDKPaylevenPaymentInstrumentFinder;

@implementation HLVSDKPaylevenPaymentInstrumentFinder

+ (void)initialize {
  hlv::objc::install();
}

+ (PLVCreditCardPaymentInstrument*)findPaylevenPaymentInstrumentIn:(NSArray*)paylevenInstruments
                                             matchesLastFourDigits:(NSString*)lastFourDigits
                                                          andBrand:(NSString*)brand {
  return original(Finder::findPaylevenPaymentInstrumentIn(
      adaptedList<hlv::objc::Instrument, hlv::PLVCreditCardPaymentInstrument>(paylevenInstruments),
      fromNSString(lastFourDigits), fromNSString(brand)));
}

+ (PLVCreditCardPaymentInstrument*)findPaylevenPaymentInstrumentIn:(NSArray*)paylevenInstruments
                                     matchesHalvoPaymentInstrument:
                                         (HLVSDKPaymentInstrument*)halvoInstrument {
  return original(Finder::findPaylevenPaymentInstrumentIn(
      adaptedList<hlv::objc::Instrument, hlv::PLVCreditCardPaymentInstrument>(paylevenInstruments),
      adapted<hlv::objc::EnteredCard>(halvoInstrument)));
}

@end
