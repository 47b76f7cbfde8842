// The request that registers a card with the backend once the provider has it.
//
// Threading: one thread at a time.
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>
#import <HLVSDKPaylevenKit/HLVSDKPaymentKitDeclarations.h>

NS_ASSUME_NONNULL_BEGIN

/// The host's add-card request, extended by the provider user token.
HLV_AVAILABLE
@interface HLVSDKAddPaylevenCreditCardRequestInfo : HLVSDKAddCreditCardRequestInfo {
 @private
  NSString* _paylevenToken;
}

@property(nonatomic, copy, nullable) NSString* paylevenToken;

/// Nil when the host base makes no object; otherwise marked with the provider value zero. Any
/// argument may be nil.
- (nullable instancetype)
    initWithPaymentInstrument:(nullable HLVSDKPaymentInstrument*)paymentInstrument
               billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                paylevenToken:(nullable NSString*)paylevenToken NS_DESIGNATED_INITIALIZER;

/// The host's body with "plv_token" inside "credit_card". A missing token is left out, and a body
/// without a "credit_card" object stays as the host made it. Immutable.
- (nullable NSDictionary<NSString*, id>*)JSONRepresentation;

/// NO with the host's error, or, when the host is content and the token is nil or empty, with the
/// invalid-argument error "paylevenToken". `error` may be null.
- (BOOL)isValid:(NSError* _Nullable* _Nullable)error;

@end

NS_ASSUME_NONNULL_END
