// The kit's door for card operations.
//
// Threading: as the manager that the calls reach; nothing happens to a completion on the way.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

NS_ASSUME_NONNULL_BEGIN

/// Forwards each call, unchanged, to the manager of the enabled kit, which is looked up afresh.
/// Before the kit is enabled a call reaches nobody: nothing happens, and its completion is never
/// called.
@interface HLVSDKPaymentManager : NSObject

/// The enabled kit's manager, or nil.
+ (nullable id<HLVSDKPaymentInstrumentManager>)sharedManager;

/// A card as the user typed it.
- (void)addPaymentInstrument:(nullable HLVSDKPaymentInstrument*)paymentInstrument
              billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                    forGuest:(nullable HLVSDKGuest*)guest
                  completion:(nullable void (^)(HLVSDKGuest* _Nullable guest,
                                                HLVSDKCreditCard* _Nullable card,
                                                NSError* _Nullable error))completion;

/// The card's identifier at the backend, and its use case.
- (void)deletePaymentInstrumentWithID:(nullable NSString*)ID
                              useCase:(nullable NSString*)useCase
                            fromGuest:(nullable HLVSDKGuest*)guest
                           completion:(nullable void (^)(HLVSDKGuest* _Nullable guest,
                                                         NSError* _Nullable error))completion;

/// The card's identifier at the backend.
- (void)updatePaymentInstrument:(nullable NSString*)ID
                 billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                       forGuest:(nullable HLVSDKGuest*)guest
                     completion:(nullable void (^)(HLVSDKGuest* _Nullable guest,
                                                   HLVSDKCreditCard* _Nullable card,
                                                   NSError* _Nullable error))completion;

@end

NS_ASSUME_NONNULL_END
