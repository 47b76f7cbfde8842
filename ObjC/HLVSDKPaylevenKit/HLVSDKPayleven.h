// The kit's facade: the class by which the host SDK knows the kit.
//
// Threading: any. The notification handlers run on the thread that posts.
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitConfiguration.h>
#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>

NS_ASSUME_NONNULL_BEGIN

/// Enabled once and alive for the rest of the process. Owns the manager and the synchroniser, and
/// synchronises the guest's instruments when the app returns to the foreground, when the guest
/// becomes authorised and when the network becomes reachable.
HLV_AVAILABLE
@interface HLVSDKPayleven : NSObject <HLVSDKKit> {
 @private
  struct HLVPaylevenCore* _core;
}

@property(nonatomic, strong, nullable) id<HLVSDKPaymentInstrumentsSynchronizer>
    paymentInstrumentsSynchronizer;
@property(nonatomic, strong, nullable) id<HLVSDKPaymentInstrumentManager> paymentInstrumentManager;
/// The host configuration that the kit was enabled with.
@property(nonatomic, strong, nullable) HLVSDKConfiguration* configuration;
/// This kit's own configuration, out of the host configuration's list.
@property(nonatomic, strong, nullable) HLVSDKPaylevenKitConfiguration* kitConfiguration;
/// The guest whose instruments are synchronised: the one who was signed in when the kit was
/// enabled, until the app sets another one. docs/objective-c.md says when.
@property(nonatomic, strong, nullable) HLVSDKGuest* currentGuest;

/// Takes the last entry whose `kit` is the receiver's class and creates the shared instance from
/// it. A missing entry, a configuration of another class and a missing payment key are each
/// reported to the assertion handler, and nothing is created then. Once the shared instance exists,
/// further calls change nothing.
+ (void)enableWithConfiguration:(nullable HLVSDKConfiguration*)configuration;

/// Nil before the kit is enabled.
+ (nullable instancetype)sharedInstance;

/// The first call of the process creates the shared instance; later arguments are ignored.
+ (nullable instancetype)
    sharedInstanceWithConfiguration:(nullable HLVSDKConfiguration*)configuration
           paylevenKitConfiguration:(nullable HLVSDKPaylevenKitConfiguration*)kitConfiguration;

/// Reads the current guest, once and for all, registers the payment key with the provider, creates
/// the manager and the synchroniser, and observes the three notifications. Starts no
/// synchronisation.
- (instancetype)initWithConfiguration:(nullable HLVSDKConfiguration*)configuration
             paylevenKitConfiguration:(nullable HLVSDKPaylevenKitConfiguration*)kitConfiguration
    NS_DESIGNATED_INITIALIZER;
/// An instance that is not set up: it registers nothing and observes nothing.
- (instancetype)init NS_DESIGNATED_INITIALIZER;

/// Does nothing; enabling has done it all.
- (void)start;

/// Registers the payment key and creates the manager.
- (void)setUpPaymentManager;
- (void)setUpPaymentInstrumentsSynchronizer;

/// Does nothing for a guest without a provider user token.
- (void)synchronizePaymentInstruments;

/// Synchronises when the session is authorised.
- (void)handleUIApplicationWillEnterForegroundNotification:(nullable NSNotification*)notification;
/// Synchronises when the notification says that the guest is authorised.
- (void)handleAuthorizationDidChangeNotification:(nullable NSNotification*)notification;
/// Synchronises when the session is authorised and the network turned reachable from another state.
- (void)handleReachabilityChangedNotification:(nullable NSNotification*)notification;

@end

/// For tests, on one thread.
@interface HLVSDKPayleven (Tests)
/// Lets the shared instance go; the next enabling creates another.
+ (void)resetSharedInstance;
/// Any object may stand in for the instance.
+ (void)setSharedInstance:(nullable HLVSDKPayleven*)instance;
@end

NS_ASSUME_NONNULL_END
