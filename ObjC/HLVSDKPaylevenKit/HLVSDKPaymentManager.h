// The kit's entry points for card operations.
//
// Threading: as the manager that the calls reach; nothing happens to a completion on the way.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>

NS_ASSUME_NONNULL_BEGIN

/// Forwards each call, unchanged, to the manager of the enabled kit, which is looked up afresh.
/// Before the kit is enabled a call reaches nobody: nothing happens, and its completion is never
/// called.
HLV_AVAILABLE HLV_SENDABLE @interface HLVSDKPaymentManager : NSObject

/// The enabled kit's manager, or nil.
+ (nullable id<HLVSDKPaymentInstrumentManager>)sharedManager;

/// A card as the user typed it. A further card that the backend refuses is reported with no card
/// and no error.
- (void)addPaymentInstrument:(nullable HLVSDKPaymentInstrument*)paymentInstrument
              billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                    forGuest:(nullable HLVSDKGuest*)guest
                  completion:(nullable void (^)(HLVSDKGuest* HLV_NULLABLE_RESULT guest,
                                                HLVSDKCreditCard* HLV_NULLABLE_RESULT card,
                                                NSError* _Nullable error))completion HLV_NO_ASYNC;

/// The card's identifier at the backend, and its use case.
- (void)deletePaymentInstrumentWithID:(nullable NSString*)ID
                              useCase:(nullable NSString*)useCase
                            fromGuest:(nullable HLVSDKGuest*)guest
                           completion:(nullable void (^)(HLVSDKGuest* HLV_NULLABLE_RESULT guest,
                                                         NSError* _Nullable error))completion
    HLV_NO_ASYNC;

/// The card's identifier at the backend. The backend client calls the completion, on its thread.
- (void)updatePaymentInstrument:(nullable NSString*)ID
                 billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                       forGuest:(nullable HLVSDKGuest*)guest
                     completion:(nullable void (^)(HLVSDKGuest* HLV_NULLABLE_RESULT guest,
                                                   HLVSDKCreditCard* HLV_NULLABLE_RESULT card,
                                                   NSError* _Nullable error))completion
    HLV_NO_ASYNC;

@end

NS_ASSUME_NONNULL_END
