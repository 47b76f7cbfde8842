// Removes from the provider whatever the backend does not know. The backend is the authority;
// nothing is ever added or changed.
//
// Threading: operations may be called from any thread; the final step of a synchronisation runs on
// the synchroniser's own serial queue, and completions come on the main thread. Set the properties
// before the first synchronisation.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>
#import <HLVSDKPaylevenKit/HLVSDKQueue.h>
#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

NS_ASSUME_NONNULL_BEGIN

@class HLVSDKPLVPaymentInstrument;

HLV_AVAILABLE
@interface HLVSDKPaylevenPaymentInstrumentsSynchronizer
    : NSObject <HLVSDKPaymentInstrumentsSynchronizer> {
 @private
  struct HLVSynchronizerCore* _core;
}

/// The host's client of its backend: where the guest's cards come from.
@property(nonatomic, strong, nullable) HLVSDKAPIManager* apiManager;
/// The provider's client: where the instruments come from, and who removes them.
@property(nonatomic, strong, nullable) PLVInAppClient* paylevenClient;
/// A missing queue is replaced when a synchronisation starts.
@property(nonatomic, strong, nullable) HLVSDKQueue synchronizationQueue;
/// While it is set, requests are dropped. Any thread.
///
/// Kept for compatibility: only a synchronisation that found instruments clears it; one that failed
/// or found none leaves it set, and whoever wants another must clear it here.
@property(nonatomic, getter=isSynchronizing) BOOL synchronizing;

/// Creates the serial queue. A nil service never replies.
- (instancetype)initWithAPIManager:(nullable HLVSDKAPIManager*)apiManager
                    paylevenClient:(nullable PLVInAppClient*)paylevenClient
    NS_DESIGNATED_INITIALIZER;

/// As below, without a report.
- (void)synchronizePaymentInstrumentsForGuest:(nullable HLVSDKGuest*)guest
    HLV_SWIFT_NAME(startSynchronizingPaymentInstruments(for:));

/// Fetches the guest's cards and the provider's instruments, and asks the provider to remove every
/// instrument without a card. Reports success once the removals are requested; how they come out is
/// only logged. Errors: the backend's own, and the wrapped one of the provider; the one that came
/// last. The guest and its token are required, but a request without them is only asserted, and
/// never completes; neither does a request that is dropped.
- (void)synchronizePaymentInstrumentsForGuest:(nullable HLVSDKGuest*)guest
                                   completion:
                                       (nullable void (HLV_ON_MAIN ^)(BOOL success,
                                                          NSError* _Nullable error))completion
    HLV_NO_ASYNC HLV_SWIFT_NAME(synchronizePaymentInstruments(for:completion:));

/// Whether a card stands for the instrument: by its external identifier, or, only where it has
/// none, by last four digits, brand and use case. Any thread.
- (BOOL)isCreditCardExistsInArray:(nullable NSArray<HLVSDKCreditCard*>*)creditCards
       relatedToPaymentInstrument:(nullable HLVSDKPLVPaymentInstrument*)paymentInstrument
    HLV_SWIFT_NAME(hasCreditCard(in:relatedTo:));

/// Lists the private, business and default instruments at the same time. Reports the pairs in the
/// order of the replies, or the last wrapped provider error; on the main thread.
- (void)
    fetchAllPaylevenPaymentInstrumentsForGuest:(nullable HLVSDKGuest*)guest
                                    completion:
                                        (nullable void(HLV_ON_MAIN ^)(
                                            NSArray<
                                                HLVSDKPLVPaymentInstrument*>* _Nullable paymentInstruments,
                                            NSError* _Nullable error))completion;

@end

NS_ASSUME_NONNULL_END
