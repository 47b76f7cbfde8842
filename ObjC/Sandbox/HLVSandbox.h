// A whole host SDK and a whole payment provider, embedded, for Objective-C apps: what the kit runs
// against without a phone, an account or a network.
//
// Threading: any thread. Services reply on threads of the sandbox's own.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

NS_ASSUME_NONNULL_BEGIN

/// One store. While it lives, and until another one is opened, the classes of the host and of the
/// provider are played by it; afterwards they return nil. Open it before the kit is enabled.
@interface HLVSandbox : NSObject {
 @private
  struct HLVSandboxCore* _core;
}

/// Opens a store, or makes one where there is no file. Nil, with one plain sentence in `problem`,
/// when it cannot.
+ (nullable instancetype)openStoreAtPath:(NSString*)path
                                 problem:(NSString* _Nullable* _Nullable)problem;
- (nullable instancetype)init NS_UNAVAILABLE;

// What an app does. Each returns nil, or one plain sentence when it could not.

/// Signs a guest in, creating one for a new address, and posts the authorisation notification.
- (nullable NSString*)signInWithEmail:(NSString*)email;
- (nullable NSString*)signOut;
/// Turns the network on or off and posts the reachability notification.
- (nullable NSString*)setReachable:(BOOL)reachable;

/// Posts the notification that the app returns to the foreground.
- (void)enterForeground;

// What an app makes of what a person types.

/// A card that is complete and valid, by its name: "visa", "mastercard", "amex" and others that
/// succeed; "declined", "backend-refused" and others that do not. Nil for an unknown name.
+ (nullable HLVSDKPaymentInstrument*)paymentInstrumentFromTestCard:(NSString*)name
                                                           useCase:(NSString*)useCase;
/// A missing field is left alone by an update.
+ (HLVSDKPaymentBillingAddress*)billingAddressWithStreet:(nullable NSString*)street
                                                    city:(nullable NSString*)city
                                             countryCode:(nullable NSString*)countryCode
                                                     zip:(nullable NSString*)zip
                                            businessName:(nullable NSString*)businessName;

// How an app says which kits the host is to run.

+ (id)entryWithKit:(Class)kit configuration:(nullable id)configuration;
+ (HLVSDKConfiguration*)configurationWithEntries:(NSArray*)entries;

// What a tester does.

/// Stores a test card at the provider, for its default use case, behind the backend's back. Returns
/// nil, or one plain sentence when it cannot.
- (nullable NSString*)addOrphanWithTestCard:(NSString*)name;

/// The signed-in guest's cards at the backend and instruments at the provider, a line each. A card
/// and the instrument that stands for it read the same: brand, last four digits, use case and the
/// instrument's identifier. Empty while nobody is signed in; nil or empty when the store cannot be
/// read.
- (nullable NSArray<NSString*>*)backendCards;
- (nullable NSArray<NSString*>*)providerInstruments;

/// Whether no reply of a service is still to come.
- (BOOL)isQuiet;

@end

NS_ASSUME_NONNULL_END
