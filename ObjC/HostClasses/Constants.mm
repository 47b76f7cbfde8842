// The host's constants, which Objective-C wants to know while it compiles.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>
#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>

NSString* const kHLVSDKCreditCardUseCaseDefault = @"default";
NSString* const kHLVSDKCreditCardUseCasePrivate = @"private";
NSString* const kHLVSDKCreditCardUseCaseBusiness = @"business";

NSString* const kHLVSDKDidChangeAuthorizationStatusNotification =
    @"HLVSDKDidChangeAuthorizationStatusNotification";
NSString* const kHLVSDKNotificationUserInfoIsAuthorizedKey =
    @"HLVSDKNotificationUserInfoIsAuthorizedKey";

NSString* const HLVSDKReachabilityDidChangeReachabilityStateNotification =
    @"HLVSDKReachabilityDidChangeReachabilityStateNotification";
NSString* const HLVSDKReachabilityDidChangeReachabilityNotificationStateKey =
    @"HLVSDKReachabilityDidChangeReachabilityNotificationStateKey";
NSString* const HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey =
    @"HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey";

NSString* const HLVURLErrorDomain = @"HLVURLErrorDomain";
NSString* const HLVPaymentErrorDomain = @"HLVPaymentErrorDomain";
