// What the kit uses of the host SDK's payments, for when the framework's own headers are not there.
//
// Threading: one thread at a time.
#if __has_include(<HLVSDKPaymentKit/HLVSDKPaymentKit.h>)
#import <HLVSDKPaymentKit/HLVSDKPaymentKit.h>
#else

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

NS_ASSUME_NONNULL_BEGIN

/// The host's request to register a card.
@interface HLVSDKAddCreditCardRequestInfo : NSObject {
 @private
  // Space for whoever implements the class; the kit derives from it and must know its size.
  void* _storage;
}
- (nullable instancetype)
    initWithPaymentInstrument:(nullable HLVSDKPaymentInstrument*)paymentInstrument
               billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress;
- (void)setProvider:(NSInteger)provider;
/// The body that is sent, with a dictionary under "credit_card".
- (nullable NSDictionary<NSString*, id>*)JSONRepresentation;
- (BOOL)isValid:(NSError* _Nullable* _Nullable)error;
@end

NS_ASSUME_NONNULL_END

#endif
