#import <HLVSDKPaylevenKit/HLVSDKPaymentManager.h>

#import <HLVSDKPaylevenKit/HLVSDKPayleven.h>

@implementation HLVSDKPaymentManager

+ (id<HLVSDKPaymentInstrumentManager>)sharedManager {
  return [[HLVSDKPayleven sharedInstance] paymentInstrumentManager];
}

- (void)addPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
              billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                    forGuest:(HLVSDKGuest*)guest
                  completion:(void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*))completion {
  [[HLVSDKPaymentManager sharedManager] addPaymentInstrument:paymentInstrument
                                              billingAddress:billingAddress
                                                    forGuest:guest
                                                  completion:completion];
}

- (void)deletePaymentInstrumentWithID:(NSString*)ID
                              useCase:(NSString*)useCase
                            fromGuest:(HLVSDKGuest*)guest
                           completion:(void (^)(HLVSDKGuest*, NSError*))completion {
  [[HLVSDKPaymentManager sharedManager] deletePaymentInstrumentWithID:ID
                                                              useCase:useCase
                                                            fromGuest:guest
                                                           completion:completion];
}

- (void)updatePaymentInstrument:(NSString*)ID
                 billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress
                       forGuest:(HLVSDKGuest*)guest
                     completion:(void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*))completion {
  [[HLVSDKPaymentManager sharedManager] updatePaymentInstrument:ID
                                                 billingAddress:billingAddress
                                                       forGuest:guest
                                                     completion:completion];
}

@end
