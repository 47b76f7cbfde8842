// A provider instrument with the use case under which the provider listed it.
//
// Threading: one thread at a time.
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

NS_ASSUME_NONNULL_BEGIN

HLV_AVAILABLE
@interface HLVSDKPLVPaymentInstrument : NSObject {
 @private
  NSString* _useCase;
  PLVCreditCardPaymentInstrument* _paymentInstrument;
}

@property(nonatomic, copy, nullable) NSString* useCase;
@property(nonatomic, strong, nullable) PLVCreditCardPaymentInstrument* paymentInstrument;

/// Checks nothing; either argument may be nil.
- (instancetype)initWithPaymentInstrument:
                    (nullable PLVCreditCardPaymentInstrument*)paymentInstrument
                                  useCase:(nullable NSString*)useCase NS_DESIGNATED_INITIALIZER;

@end

NS_ASSUME_NONNULL_END
