// What the kit uses of the payment provider's library, for when its own headers are not there.
//
// Threading: calls come from any thread, several at once; each gets one reply, on any thread.
#if __has_include(<PaylevenFramework/PaylevenFramework.h>)
#import <PaylevenFramework/PaylevenFramework.h>
#else

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@class PLVCreditCardPaymentInstrument;

@interface PLVPaymentInstrument : NSObject
+ (nullable PLVCreditCardPaymentInstrument*)
    createCreditCardPaymentInstrumentWithPan:(nullable NSString*)pan
                                 expiryMonth:(nullable NSString*)expiryMonth
                                  expiryYear:(nullable NSString*)expiryYear
                                         cvv:(nullable NSString*)cvv
                               andCardHolder:(nullable NSString*)cardHolder;
@end

/// A card instrument: made from an entered card, or listed by the provider.
@interface PLVCreditCardPaymentInstrument : PLVPaymentInstrument
- (nullable NSString*)identifier;
/// The number as the provider keeps it; it ends with the card's last four digits.
- (nullable NSString*)pan;
- (nullable NSString*)cardBrand;
- (nullable NSString*)expiryMonth;
- (nullable NSString*)expiryYear;
/// 0 is the only state in which the kit uses an instrument.
- (NSUInteger)state;
@end

/// The provider's client.
@interface PLVInAppClient : NSObject
+ (nullable PLVInAppClient*)sharedInstance;
- (void)registerWithAPIKey:(nullable NSString*)key;
- (void)createUserToken:(nullable NSString*)email
    withPaymentInstrument:(nullable PLVPaymentInstrument*)paymentInstrument
               andUseCase:(nullable NSString*)useCase
            andCompletion:(nullable void (^)(NSString* _Nullable userToken,
                                             NSError* _Nullable error))completion;
- (void)addPaymentInstrument:(nullable PLVPaymentInstrument*)paymentInstrument
                forUserToken:(nullable NSString*)userToken
                  andUseCase:(nullable NSString*)useCase
               andCompletion:(nullable void (^)(NSError* _Nullable error))completion;
- (void)getPaymentInstrumentsList:(nullable NSString*)userToken
                       andUseCase:(nullable NSString*)useCase
                    andCompletion:
                        (nullable void (^)(
                            NSArray<PLVCreditCardPaymentInstrument*>* _Nullable instruments,
                            NSError* _Nullable error))completion;
- (void)removePaymentInstrument:(nullable PLVPaymentInstrument*)paymentInstrument
                    fromUseCase:(nullable NSString*)useCase
                   forUserToken:(nullable NSString*)userToken
                  andCompletion:(nullable void (^)(NSError* _Nullable error))completion;
@end

NS_ASSUME_NONNULL_END

#endif
