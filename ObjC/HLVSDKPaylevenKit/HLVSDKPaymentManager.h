// The kit's entry point for card operations.
//
// Threading: any. Operations run on the caller's thread until they hand over to the backend or the
// provider. Completions come on the main thread, except that of an update, which the backend client
// calls on a thread of its choice.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>

NS_ASSUME_NONNULL_BEGIN

/// Forwards each call, unchanged, to the manager of the enabled kit, which is looked up afresh.
/// Before the kit is enabled nothing happens, and the completion is never called.
/// `HLVSDKPaylevenPaymentInstrumentManager` says which arguments are required, and which errors and
/// silences there are.
HLV_AVAILABLE HLV_SENDABLE @interface HLVSDKPaymentManager : NSObject

/// The enabled kit's manager, or nil.
+ (nullable id<HLVSDKPaymentInstrumentManager>)sharedManager;

/// Adds a card as the user typed it. The completion gets the guest, the backend's card and an
/// error; on the main thread. For a guest's first card, card and error may come together. A further
/// card that the backend refuses comes back with no card **and no error**: it was added only when
/// there is a card.
- (void)addPaymentInstrument:(nullable HLVSDKPaymentInstrument*)paymentInstrument
              billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                    forGuest:(nullable HLVSDKGuest*)guest
                  completion:(nullable void (^)(HLVSDKGuest* HLV_NULLABLE_RESULT guest,
                                                HLVSDKCreditCard* HLV_NULLABLE_RESULT card,
                                                NSError* _Nullable error))completion HLV_NO_ASYNC;

/// Deletes the card with the backend's identifier `ID`. The completion gets the guest as the
/// backend returned it and an error; on the main thread. Both come together when only the provider
/// failed.
- (void)deletePaymentInstrumentWithID:(nullable NSString*)ID
                              useCase:(nullable NSString*)useCase
                            fromGuest:(nullable HLVSDKGuest*)guest
                           completion:(nullable void (^)(HLVSDKGuest* HLV_NULLABLE_RESULT guest,
                                                         NSError* _Nullable error))completion
    HLV_NO_ASYNC;

/// Sends the billing address of the card with the backend's identifier `ID`. The completion gets
/// the guest, the card and an error, on the backend client's thread.
- (void)updatePaymentInstrument:(nullable NSString*)ID
                 billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                       forGuest:(nullable HLVSDKGuest*)guest
                     completion:(nullable void (^)(HLVSDKGuest* HLV_NULLABLE_RESULT guest,
                                                   HLVSDKCreditCard* HLV_NULLABLE_RESULT card,
                                                   NSError* _Nullable error))completion
    HLV_NO_ASYNC;

@end

NS_ASSUME_NONNULL_END
