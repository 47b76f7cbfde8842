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

// The keys of an address dictionary. A compiler cannot write an array down as it does a string, so
// the list is made when the class below is loaded, which is before any code of an app runs; and the
// declaration calls it a constant, so its name is another one here.
extern "C" NSArray* addressKeys __asm__("HLVSDKCreditCardBusinessAddressJSONKeyes");
NSArray* addressKeys = nil;

@interface HLVCoreAddressKeys : NSObject
@end

@implementation HLVCoreAddressKeys

+ (void)load {
  addressKeys = [[NSArray alloc]
      initWithObjects:@"street", @"city", @"country_code", @"zip", @"business_name", nil];
}

@end
