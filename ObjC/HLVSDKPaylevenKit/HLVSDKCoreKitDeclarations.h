// What the kit uses of the host SDK's core, for when the framework's own headers are not there.
//
// On a phone the framework's headers are taken and this file declares nothing. Elsewhere whoever
// plays the host implements these classes: as subclasses of them, since a class without the
// framework has no place for instance variables, and with what the class methods return.
//
// Threading: members are called from any thread; callbacks may come on any thread.
#if __has_include(<HLVSDKCoreKit/HLVSDKCoreKit.h>)
#import <HLVSDKCoreKit/HLVSDKCoreKit.h>
#else

#import <HLVSDKPaylevenKit/HLVSDKPaylevenKitMarks.h>

NS_ASSUME_NONNULL_BEGIN

@class HLVSDKAddCreditCardRequestInfo, HLVSDKConfiguration, HLVSDKCreditCard, HLVSDKGuest;
@class HLVSDKPaymentBillingAddress, HLVSDKPaymentInstrument, HLVSDKUpdateGuestRequestInfo;

/// A kit that the host SDK can run.
@protocol HLVSDKKit <NSObject>
+ (void)enableWithConfiguration:(nullable HLVSDKConfiguration*)configuration;
+ (nullable instancetype)sharedInstance;
- (void)start;
@end

/// A kit's own configuration record.
@protocol HLVSDKKitConfiguration <NSObject, NSCopying>
@end

/// Performs the host's card operations.
@protocol HLVSDKPaymentInstrumentManager <NSObject>
- (void)addPaymentInstrument:(nullable HLVSDKPaymentInstrument*)paymentInstrument
              billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                    forGuest:(nullable HLVSDKGuest*)guest
                  completion:(nullable void (^)(HLVSDKGuest* _Nullable guest,
                                                HLVSDKCreditCard* _Nullable card,
                                                NSError* _Nullable error))completion;
- (void)deletePaymentInstrumentWithID:(nullable NSString*)ID
                              useCase:(nullable NSString*)useCase
                            fromGuest:(nullable HLVSDKGuest*)guest
                           completion:(nullable void (^)(HLVSDKGuest* _Nullable guest,
                                                         NSError* _Nullable error))completion;
- (void)updatePaymentInstrument:(nullable NSString*)ID
                 billingAddress:(nullable HLVSDKPaymentBillingAddress*)billingAddress
                       forGuest:(nullable HLVSDKGuest*)guest
                     completion:(nullable void (^)(HLVSDKGuest* _Nullable guest,
                                                   HLVSDKCreditCard* _Nullable card,
                                                   NSError* _Nullable error))completion;
@end

/// Keeps a provider's instruments in step with a guest's cards.
@protocol HLVSDKPaymentInstrumentsSynchronizer <NSObject>
- (void)synchronizePaymentInstrumentsForGuest:(nullable HLVSDKGuest*)guest
    HLV_SWIFT_NAME(startSynchronizingPaymentInstruments(for:));
- (void)synchronizePaymentInstrumentsForGuest:(nullable HLVSDKGuest*)guest
                                   completion:
                                       (nullable void (^)(BOOL success,
                                                          NSError* _Nullable error))completion
    HLV_NO_ASYNC HLV_SWIFT_NAME(synchronizePaymentInstruments(for:completion:));
@end

/// The configuration that an app gives to the host SDK and to every kit that it enables.
@interface HLVSDKConfiguration : NSObject
/// Entries of the host's own class, each with `kit`, the kit's class, and `configuration`, the
/// kit's own record.
- (nullable NSArray*)kits;
@end

/// The signed-in user.
@interface HLVSDKGuest : NSObject
+ (nullable HLVSDKGuest*)currentGuest;
- (nullable NSString*)email;
/// The provider user token; nil or empty when the guest has none.
- (nullable NSString*)paylevenToken;
- (nullable NSArray<HLVSDKCreditCard*>*)creditCards;
@end

/// A card as the user typed it.
@interface HLVSDKPaymentInstrument : NSObject
- (nullable NSString*)pan;
- (nullable NSString*)expiryMonth;
- (nullable NSString*)expiryYear;
- (nullable NSString*)cvv;
- (nullable NSString*)cardHolder;
- (nullable NSString*)instrumentUseCaseString;
/// May leave the error nil when it returns NO.
- (BOOL)isValid:(NSError* _Nullable* _Nullable)error;
- (void)setExternalIdentifier:(nullable NSString*)externalIdentifier;
@end

/// A card as the backend keeps it.
@interface HLVSDKCreditCard : NSObject
/// The brand of a card number, spelled as the provider spells `cardBrand`.
+ (nullable NSString*)cardBrandFromNumber:(nullable NSString*)number;
- (nullable NSString*)halvoID;
- (nullable NSString*)lastFourDigits;
- (nullable NSString*)brand;
- (nullable NSString*)useCase;
/// The identifier of the provider's instrument; nil for a card that is not tied to one.
- (nullable NSString*)externalIdentifier;
@end

@interface HLVSDKPaymentBillingAddress : NSObject
- (nullable NSString*)countryCode;
- (nullable NSString*)street;
- (nullable NSString*)city;
- (nullable NSString*)zip;
- (nullable NSString*)businessName;
@end

/// Asks the backend to change the current guest.
@interface HLVSDKUpdateGuestRequestInfo : NSObject
/// The provider user token to store.
- (void)setPaymentToken:(nullable NSString*)token;
@end

/// The host's client of its backend. Each call gets one reply, on any thread.
@interface HLVSDKAPIManager : NSObject
+ (nullable HLVSDKAPIManager*)manager;
- (void)updateCurrentGuestWithRequest:(nullable HLVSDKUpdateGuestRequestInfo*)request
                           completion:(nullable void (^)(HLVSDKGuest* _Nullable guest,
                                                         NSError* _Nullable error))completion;
- (void)addCreditCardForGuest:(nullable HLVSDKGuest*)guest
              withRequestInfo:(nullable HLVSDKAddCreditCardRequestInfo*)requestInfo
                   completion:(nullable void (^)(HLVSDKGuest* _Nullable guest,
                                                 HLVSDKCreditCard* _Nullable card,
                                                 NSError* _Nullable error))completion;
- (void)deleteCreditCardWithID:(nullable NSString*)ID
                     fromGuest:(nullable HLVSDKGuest*)guest
                    completion:(nullable void (^)(HLVSDKGuest* _Nullable guest,
                                                  NSError* _Nullable error))completion;
- (void)updateCreditCard:(nullable NSString*)ID
          billingAddress:(nullable NSDictionary<NSString*, id>*)billingAddress
                forGuest:(nullable HLVSDKGuest*)guest
              completion:(nullable void (^)(HLVSDKGuest* _Nullable guest,
                                            HLVSDKCreditCard* _Nullable card,
                                            NSError* _Nullable error))completion;
- (void)fetchGuestCreditCards:(nullable HLVSDKGuest*)guest
                   completion:(nullable void (^)(NSArray<HLVSDKCreditCard*>* _Nullable cards,
                                                 NSError* _Nullable error))completion;
@end

/// The host's view of the network.
@interface HLVSDKReachability : NSObject
+ (nullable HLVSDKReachability*)sharedReachability;
/// Zero means not reachable; the lowest eight bits count.
- (NSInteger)currentState;
@end

/// Reports of programming errors; none stops the program.
@interface HLVSDKAsserts : NSObject
+ (void)handleAssertWithMessage:(nullable NSString*)message;
+ (void)handleParameterAssert:(nullable NSString*)parameter withMessage:(nullable NSString*)message;
@end

/// Sends log lines to the host's service.
@interface HLVSDKRemoteLogger : NSObject
+ (nullable HLVSDKRemoteLogger*)sharedLogger;
- (void)logWithLevel:(NSInteger)level
                path:(const char*)path
                line:(NSInteger)line
            function:(const char*)function
              format:(NSString*)format, ...;
@end

/// Writes log lines to the console.
@interface HLVSDKConsoleLogger : NSObject
+ (nullable HLVSDKConsoleLogger*)sharedLogger;
- (void)logWithLevel:(NSInteger)level
                path:(const char*)path
                line:(NSInteger)line
            function:(const char*)function
              format:(NSString*)format, ...;
@end

/// The use cases under which the provider stores instruments.
FOUNDATION_EXPORT NSString* const kHLVSDKCreditCardUseCaseDefault;
FOUNDATION_EXPORT NSString* const kHLVSDKCreditCardUseCasePrivate;
FOUNDATION_EXPORT NSString* const kHLVSDKCreditCardUseCaseBusiness;

/// The keys of an address dictionary: street, city, countryCode, zip, businessName.
FOUNDATION_EXPORT NSArray<NSString*>* const HLVSDKCreditCardBusinessAddressJSONKeyes;

/// Posted when the guest's authorisation changes, with a boolean number under the key.
FOUNDATION_EXPORT NSString* const kHLVSDKDidChangeAuthorizationStatusNotification;
FOUNDATION_EXPORT NSString* const kHLVSDKNotificationUserInfoIsAuthorizedKey;

/// Posted when reachability changes, with the state and the one before as numbers.
FOUNDATION_EXPORT NSString* const HLVSDKReachabilityDidChangeReachabilityStateNotification;
FOUNDATION_EXPORT NSString* const HLVSDKReachabilityDidChangeReachabilityNotificationStateKey;
FOUNDATION_EXPORT
NSString* const HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey;

NS_ASSUME_NONNULL_END

#endif
