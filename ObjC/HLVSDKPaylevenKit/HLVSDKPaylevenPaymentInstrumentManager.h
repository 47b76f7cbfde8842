// Adds, updates and deletes a guest's cards at the payment provider and the host backend.
//
// Threading: operations may be called from any thread and run there until they hand over to the
// backend or the provider. Completions come on the main thread, except that of an update, which is
// the backend client's to call. Set the properties before the first operation.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

NS_ASSUME_NONNULL_BEGIN

/// A nil completion is skipped and everything else still happens. Each operation reports at most
/// once; when a service never replies, or the manager goes away at the moments named below, it
/// never does. Results and an error may come together, which the `async` forms of Swift cannot
/// say: they throw.
HLV_AVAILABLE
@interface HLVSDKPaylevenPaymentInstrumentManager : NSObject <HLVSDKPaymentInstrumentManager> {
 @private
  BOOL _connectionAvaiable;
  struct HLVManagerCore* _core;
}

/// Whether the network was last seen reachable; NO until it is first set. Any thread.
@property(nonatomic, getter=isConnectionAvailable, setter=setConnectionAvaiable:)
    BOOL connectionAvaiable;
/// The provider's client.
@property(nonatomic, strong, nullable) PLVInAppClient* paymentClient;
/// The host's client of its backend.
@property(nonatomic, strong, nullable) HLVSDKAPIManager* apiManager;
/// The host's view of the network.
@property(nonatomic, strong, nullable) HLVSDKReachability* reachability;

/// Begins to observe reachability. A nil service never replies.
- (instancetype)initWithAPIManager:(nullable HLVSDKAPIManager*)apiManager
                    paylevenClient:(nullable PLVInAppClient*)paylevenClient
                      reachability:(nullable HLVSDKReachability*)reachability
    NS_DESIGNATED_INITIALIZER;

/// Takes the connectivity flag from the notification.
- (void)handleReachabilityChangedNotification:(nullable NSNotification*)notification;

/// Whether country code, street, city and zip are all there; the first that is not is reported as
/// an invalid argument. `error` must not be null. With a complete address the result is NO when
/// `*error` already holds an error, which is left alone.
- (BOOL)validateBillingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                         error:(NSError* _Nullable* _Nonnull)error;

/// Adds a card as the user typed it. Reports the card's own error when it is not valid,
/// `HLVURLErrorDomain` code 1 without a connection, and otherwise what the first-card or the
/// further-card operation reports, for a guest without or with a provider user token. The address
/// is not validated.
- (void)addPaymentInstrument:(nullable HLVSDKPaymentInstrument*)paymentInstrument
              billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                    forGuest:(nullable HLVSDKGuest*)guest
                  completion:
                      (nullable void(HLV_ON_MAIN ^)(HLVSDKGuest* HLV_NULLABLE_RESULT guest,
                                                    HLVSDKCreditCard* HLV_NULLABLE_RESULT card,
                                                    NSError* _Nullable error))completion
    HLV_NO_ASYNC;

/// Creates the provider user token with the card, confirms the card, and then stores the token on
/// the guest and registers the card, both at once. Reports the guest that was passed in and the
/// backend's card; a card and an error may come together. Errors: the wrapped provider error, those
/// of the confirmation, the required arguments "userToken" and "identifier", and the first error of
/// the backend.
///
/// When the manager goes away before the provider has created the token, a token never completes,
/// while an error and a missing token are reported. When it goes away before the card is confirmed,
/// a confirmed card is marked and never completes, while an error and a card that nothing matches
/// are reported. Once the requests to the backend have left, it completes.
- (void)addFirstPaymentInstrument:(nullable HLVSDKPaymentInstrument*)paymentInstrument
                   billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                         forGuest:(nullable HLVSDKGuest*)guest
                       completion:
                           (nullable void(HLV_ON_MAIN ^)(HLVSDKGuest* HLV_NULLABLE_RESULT guest,
                                                         HLVSDKCreditCard* HLV_NULLABLE_RESULT card,
                                                         NSError* _Nullable error))completion
    HLV_NO_ASYNC;

/// The provider's half of the first-card operation.
- (void)addFirstPaymentInstrumentToPayleven:(nullable HLVSDKPaymentInstrument*)paymentInstrument
                              forGuestEmail:(nullable NSString*)email
                                 completion:(nullable void(HLV_ON_MAIN ^)(
                                                NSString* HLV_NULLABLE_RESULT paylevenToken,
                                                PLVCreditCardPaymentInstrument* HLV_NULLABLE_RESULT
                                                    instrument,
                                                NSError* _Nullable error))completion HLV_NO_ASYNC;

/// Adds the card under the guest's token, confirms it and registers it. Reports the backend's guest
/// and card. Errors: the wrapped provider error, those of the confirmation and the required
/// argument "identifier". Kept for compatibility: a registration that the backend refuses reports
/// no error, usually without guest and card; so a missing card means that the card was not added.
///
/// When the manager goes away before the provider has stored the card, a success never completes,
/// while an error is reported. When it goes away before the card is confirmed, a confirmed card is
/// marked and never completes, while an error and a card that nothing matches are reported. Once
/// the request to the backend has left, it completes.
- (void)addNewPaymentInstrument:(nullable HLVSDKPaymentInstrument*)paymentInstrument
                 billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                       forGuest:(nullable HLVSDKGuest*)guest
                     completion:
                         (nullable void(HLV_ON_MAIN ^)(HLVSDKGuest* HLV_NULLABLE_RESULT guest,
                                                       HLVSDKCreditCard* HLV_NULLABLE_RESULT card,
                                                       NSError* _Nullable error))completion
    HLV_NO_ASYNC;

/// The provider's half of the further-card operation.
- (void)addNewPaymentInstrumentToPayleven:(nullable HLVSDKPaymentInstrument*)paymentInstrument
                        withPaylevenToken:(nullable NSString*)paylevenToken
                               completion:(nullable void(HLV_ON_MAIN ^)(
                                              NSString* HLV_NULLABLE_RESULT paylevenToken,
                                              PLVCreditCardPaymentInstrument* HLV_NULLABLE_RESULT
                                                  instrument,
                                              NSError* _Nullable error))completion HLV_NO_ASYNC;

/// Finds the instrument that the provider has just stored for a card. Card and token are required.
/// Reports the token and the instrument, or no instrument when none matches, which is no error
/// here. Errors: the required arguments "paymentInstrument" and "paylevenToken", the wrapped
/// provider error, and `HLVPaymentErrorDomain` code 5 for an instrument that cannot be used.
- (void)processAddedPaymentInstrument:(nullable HLVSDKPaymentInstrument*)paymentInstrument
                        paylevenToken:(nullable NSString*)paylevenToken
                           completion:
                               (nullable void(HLV_ON_MAIN ^)(
                                   NSString* HLV_NULLABLE_RESULT paylevenToken,
                                   PLVCreditCardPaymentInstrument* HLV_NULLABLE_RESULT instrument,
                                   NSError* _Nullable error))completion;

/// Deletes a card at the backend and then its instrument at the provider. Required: a guest with a
/// provider user token, the card's identifier at the backend, its use case, and that the guest has
/// the card. Reports the guest as the backend returned it; guest and error come together when only
/// the provider failed. Errors: the required arguments "paymentToken", "halvoID", "useCase" and
/// "existedCard", `HLVURLErrorDomain` code 1 without a connection, the backend's own error, and the
/// wrapped error of the removal. When the manager goes away before the backend replies, an error is
/// still reported and a success never is.
- (void)deletePaymentInstrumentWithID:(nullable NSString*)ID
                              useCase:(nullable NSString*)useCase
                            fromGuest:(nullable HLVSDKGuest*)guest
                           completion:
                               (nullable void(HLV_ON_MAIN ^)(HLVSDKGuest* HLV_NULLABLE_RESULT guest,
                                                             NSError* _Nullable error))completion
    HLV_NO_ASYNC;

/// Sends a card's billing address to the backend; missing fields are left out. The backend client
/// calls the completion itself, on a thread of its choice.
- (void)updatePaymentInstrument:(nullable NSString*)ID
                 billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                       forGuest:(nullable HLVSDKGuest*)guest
                     completion:(nullable void (^)(HLVSDKGuest* HLV_NULLABLE_RESULT guest,
                                                   HLVSDKCreditCard* HLV_NULLABLE_RESULT card,
                                                   NSError* _Nullable error))completion;

@end

NS_ASSUME_NONNULL_END
