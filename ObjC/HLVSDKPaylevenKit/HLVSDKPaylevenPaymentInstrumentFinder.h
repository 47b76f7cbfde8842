// Picks the provider instrument that stands for a card.
//
// Threading: pure and re-entrant; any thread, on the caller's thread.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

NS_ASSUME_NONNULL_BEGIN

/// The provider does not keep the host's card identifiers, so a match is made on what both sides
/// know of a card. Only instruments in state 0 match; where several do, the last of the list wins.
/// A nil argument goes to the assertion handler by its name and finds nothing.
HLV_AVAILABLE
@interface HLVSDKPaylevenPaymentInstrumentFinder : NSObject

/// All three are required. Returns an object of the list, or nil.
+ (nullable PLVCreditCardPaymentInstrument*)
    findPaylevenPaymentInstrumentIn:
        (nullable NSArray<PLVCreditCardPaymentInstrument*>*)paylevenInstruments
              matchesLastFourDigits:(nullable NSString*)lastFourDigits
                           andBrand:(nullable NSString*)brand
    HLV_SWIFT_NAME(paymentInstrument(in:lastFourDigits:brand:));

/// Both are required. Matches the number's last four digits, its brand, and the expiry as it is
/// spelled. Returns an object of the list, or nil.
+ (nullable PLVCreditCardPaymentInstrument*)
    findPaylevenPaymentInstrumentIn:
        (nullable NSArray<PLVCreditCardPaymentInstrument*>*)paylevenInstruments
      matchesHalvoPaymentInstrument:(nullable HLVSDKPaymentInstrument*)halvoInstrument
    HLV_SWIFT_NAME(paymentInstrument(in:matching:));

@end

NS_ASSUME_NONNULL_END
