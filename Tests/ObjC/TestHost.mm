#include "Tests/ObjC/TestHost.h"

#include <map>
#include <mutex>
#include <sstream>

#include "ObjC/Binding/Strings.h"

namespace hlv::testing {
namespace {

std::mutex recordsMutex;
// Host classes have no place for instance variables, so their fields lie here.
std::map<const void*, NSMutableDictionary*>& records() {
  static auto& all = *new std::map<const void*, NSMutableDictionary*>;
  return all;
}

void forget(id record) {
  NSMutableDictionary* fields = nil;
  {
    const std::lock_guard lock(recordsMutex);
    const auto found = records().find(record);
    if (found == records().end()) return;
    fields = found->second;
    records().erase(found);
  }
  [fields release];
}

void note(NSString* format, ...) NS_FORMAT_FUNCTION(1, 2);
void note(NSString* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  NSString* line = [[[NSString alloc] initWithFormat:format arguments:arguments] autorelease];
  va_end(arguments);
  TestHost::shared().trace.push_back(objc::fromNSString(line).value_or(""));
}

void noteLog(const char* logger, NSInteger level, const char* function, NSString* format,
             va_list arguments) {
  NSString* line = [[[NSString alloc] initWithFormat:format arguments:arguments] autorelease];
  note(@"%s %ld %s: %@ = %@", logger, static_cast<long>(level), function, format, line);
}

}  // namespace

NSMutableDictionary* fieldsOf(id record) {
  const std::lock_guard lock(recordsMutex);
  auto& fields = records()[record];
  if (!fields) fields = [[NSMutableDictionary alloc] init];
  return fields;
}

std::size_t liveRecords() {
  const std::lock_guard lock(recordsMutex);
  return records().size();
}

NSError* makeError(NSString* description) {
  return [NSError errorWithDomain:@"service"
                             code:7
                         userInfo:@{NSLocalizedDescriptionKey : description}];
}

TestHost& TestHost::shared() {
  static auto& host = *new TestHost;
  return host;
}

std::string TestHost::takeTrace() {
  std::ostringstream text;
  for (std::size_t i = 0; i < trace.size(); ++i) text << (i ? "\n" : "") << trace[i];
  trace.clear();
  return text.str();
}

void TestHost::reset() {
  [currentGuest release], currentGuest = nil;
  [request release], request = nil;
  [address release], address = nil;
  [lastToken release], lastToken = nil;
  [requestBody release], requestBody = nil;
  [requestError release], requestError = nil;
  network = 1;
  authorized = YES;
  guestUpdates.drop(), deletions.drop(), cardAdds.drop(), cardUpdates.drop(), cardFetches.drop();
  lists.drop(), tokens.drop(), adds.drop(), removals.drop();
  trace.clear();
}

}  // namespace hlv::testing

using hlv::testing::fieldsOf;
using hlv::testing::forget;
using hlv::testing::note;
using hlv::testing::noteLog;
using hlv::testing::TestHost;

#define FIELD(name)                               \
  -(NSString*)name {                              \
    return [fieldsOf(self) objectForKey:@ #name]; \
  }
#define RECORD       \
  -(void)dealloc {   \
    forget(self);    \
    [super dealloc]; \
  }

NSString* const kHLVSDKCreditCardUseCaseDefault = @"default";
NSString* const kHLVSDKCreditCardUseCasePrivate = @"private";
NSString* const kHLVSDKCreditCardUseCaseBusiness = @"business";
NSString* const kHLVSDKDidChangeAuthorizationStatusNotification = @"authorization";
NSString* const kHLVSDKNotificationUserInfoIsAuthorizedKey = @"authorized";
NSString* const HLVSDKReachabilityDidChangeReachabilityStateNotification = @"reachability";
NSString* const HLVSDKReachabilityDidChangeReachabilityNotificationStateKey = @"state";
NSString* const HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey = @"before";
NSString* const HLVURLErrorDomain = @"URL";
NSString* const HLVPaymentErrorDomain = @"Payment";

@implementation TestKitEntry
+ (instancetype)entryWithKit:(Class)kit configuration:(id)configuration {
  TestKitEntry* entry = [[self new] autorelease];
  entry->_kit = kit;
  entry->_configuration = [configuration retain];
  return entry;
}
- (void)dealloc {
  [_configuration release];
  [super dealloc];
}
- (Class)kit {
  return _kit;
}
- (id)configuration {
  return _configuration;
}
@end

@implementation HLVSDKConfiguration
RECORD
- (NSArray*)kits {
  return [fieldsOf(self) objectForKey:@"kits"];
}
@end

@implementation HLVSDKGuest
RECORD FIELD(email) FIELD(paylevenToken) + (HLVSDKGuest*)currentGuest {
  return TestHost::shared().currentGuest;
}
- (NSArray*)creditCards {
  return [fieldsOf(self) objectForKey:@"creditCards"];
}
@end

@implementation HLVSDKPaymentInstrument
RECORD FIELD(pan) FIELD(expiryMonth) FIELD(expiryYear) FIELD(cvv) FIELD(cardHolder)
        FIELD(instrumentUseCaseString) -
    (BOOL)isValid : (NSError**)error {
  *error = [fieldsOf(self) objectForKey:@"error"];
  return *error == nil;
}
- (void)setExternalIdentifier:(NSString*)externalIdentifier {
  note(@"card is %@", externalIdentifier);
}
@end

@implementation HLVSDKCreditCard
RECORD FIELD(halvoID) FIELD(lastFourDigits) FIELD(brand) FIELD(useCase) FIELD(externalIdentifier) +
    (NSString*)cardBrandFromNumber : (NSString*)number {
  return [number hasPrefix:@"4"] ? @"visa" : nil;
}
@end

@implementation HLVSDKPaymentBillingAddress
RECORD FIELD(countryCode) FIELD(street) FIELD(city) FIELD(zip) FIELD(businessName) @end

@implementation HLVSDKUpdateGuestRequestInfo
RECORD
- (void)setPaymentToken:(NSString*)token {
  [fieldsOf(self) setObject:token forKey:@"token"];
}
@end

@implementation HLVSDKAPIManager
+ (HLVSDKAPIManager*)manager {
  static HLVSDKAPIManager* manager = [self new];
  return manager;
}
- (void)updateCurrentGuestWithRequest:(HLVSDKUpdateGuestRequestInfo*)request
                           completion:(hlv::testing::GuestBlock)completion {
  note(@"backend token %@", [fieldsOf(request) objectForKey:@"token"]);
  TestHost::shared().guestUpdates.hold(completion);
}
- (void)addCreditCardForGuest:(HLVSDKGuest*)guest
              withRequestInfo:(HLVSDKAddCreditCardRequestInfo*)requestInfo
                   completion:(hlv::testing::GuestCardBlock)completion {
  note(@"backend add for %@", [guest email]);
  [TestHost::shared().request release];
  TestHost::shared().request = [requestInfo retain];
  TestHost::shared().cardAdds.hold(completion);
}
- (void)deleteCreditCardWithID:(NSString*)ID
                     fromGuest:(HLVSDKGuest*)guest
                    completion:(hlv::testing::GuestBlock)completion {
  note(@"backend delete %@ of %@", ID, [guest email]);
  TestHost::shared().deletions.hold(completion);
}
- (void)updateCreditCard:(NSString*)ID
          billingAddress:(NSDictionary*)billingAddress
                forGuest:(HLVSDKGuest*)guest
              completion:(hlv::testing::GuestCardBlock)completion {
  note(@"backend update %@ of %@", ID, [guest email]);
  [TestHost::shared().address release];
  TestHost::shared().address = [billingAddress copy];
  TestHost::shared().cardUpdates.hold(completion);
}
- (void)fetchGuestCreditCards:(HLVSDKGuest*)guest completion:(hlv::testing::CardsBlock)completion {
  note(@"backend cards of %@", [guest email]);
  TestHost::shared().cardFetches.hold(completion);
}
@end

@implementation HLVSDKReachability
+ (HLVSDKReachability*)sharedReachability {
  static HLVSDKReachability* reachability = [self new];
  return reachability;
}
- (NSInteger)currentState {
  return TestHost::shared().network;
}
@end

@implementation HLVSDKAsserts
+ (void)handleAssertWithMessage:(NSString*)message {
  note(@"assert %@", message);
}
+ (void)handleParameterAssert:(NSString*)parameter withMessage:(NSString*)message {
  note(@"assert parameter %@: %@", parameter, message);
}
@end

@implementation HLVSDKRemoteLogger
+ (HLVSDKRemoteLogger*)sharedLogger {
  static HLVSDKRemoteLogger* logger = [self new];
  return logger;
}
- (void)logWithLevel:(NSInteger)level
                path:(const char*)path
                line:(NSInteger)line
            function:(const char*)function
              format:(NSString*)format, ... {
  va_list arguments;
  va_start(arguments, format);
  noteLog("remote", level, function, format, arguments);
  va_end(arguments);
}
@end

@implementation HLVSDKConsoleLogger
+ (HLVSDKConsoleLogger*)sharedLogger {
  static HLVSDKConsoleLogger* logger = [self new];
  return logger;
}
- (void)logWithLevel:(NSInteger)level
                path:(const char*)path
                line:(NSInteger)line
            function:(const char*)function
              format:(NSString*)format, ... {
  va_list arguments;
  va_start(arguments, format);
  noteLog("console", level, function, format, arguments);
  va_end(arguments);
}
@end

@implementation HLVSDKAddCreditCardRequestInfo
RECORD
- (instancetype)initWithPaymentInstrument:(HLVSDKPaymentInstrument*)paymentInstrument
                           billingAddress:(HLVSDKPaymentBillingAddress*)billingAddress {
  if ((self = [super init])) {
    NSMutableDictionary* fields = fieldsOf(self);
    if (paymentInstrument) [fields setObject:paymentInstrument forKey:@"card"];
    if (billingAddress) [fields setObject:billingAddress forKey:@"address"];
  }
  return self;
}
- (void)setProvider:(NSInteger)provider {
  [fieldsOf(self) setObject:@(provider) forKey:@"provider"];
}
- (NSDictionary*)JSONRepresentation {
  return TestHost::shared().requestBody;
}
- (BOOL)isValid:(NSError**)error {
  if (error) *error = TestHost::shared().requestError;
  return TestHost::shared().requestError == nil;
}
@end

@implementation HLVSession
+ (HLVSession*)activeSession {
  static HLVSession* session = [self new];
  return session;
}
- (BOOL)isAuthorized {
  return TestHost::shared().authorized;
}
@end

@implementation NSError (HLVDeveloperMessage)
- (NSString*)developerMessage {
  return [NSString stringWithFormat:@"for developers: %@", [self localizedDescription]];
}
@end

@implementation HLVErrorFacade
- (NSError*)errorWithCode:(NSInteger)code domain:(NSString*)domain message:(NSString*)message {
  NSString* text = message ? message : @"nil";
  return [NSError errorWithDomain:domain code:code userInfo:@{NSLocalizedDescriptionKey : text}];
}
- (NSError*)invalidArgumentErrorWithName:(NSString*)name
                                   value:(id)value
                                 message:(NSString*)message {
  return [self errorWithCode:1
                      domain:@"invalid"
                     message:[NSString stringWithFormat:@"%@ '%@': %@", name, value, message]];
}
- (NSError*)requiredArgumentErrorWithName:(NSString*)name
                                  message:(NSString*)message
                             functionName:(const char*)functionName
                                 fileName:(const char*)fileName {
  return
      [self errorWithCode:2
                   domain:@"required"
                  message:[NSString stringWithFormat:@"%@: %@, %s", name, message, functionName]];
}
- (NSError*)paymentProviderErrorWithError:(NSError*)error {
  return [NSError
      errorWithDomain:@"wrapped"
                 code:[error code]
             userInfo:@{NSUnderlyingErrorKey : error, NSLocalizedDescriptionKey : @"wrapped"}];
}
@end

@implementation PLVPaymentInstrument
+ (PLVCreditCardPaymentInstrument*)createCreditCardPaymentInstrumentWithPan:(NSString*)pan
                                                                expiryMonth:(NSString*)expiryMonth
                                                                 expiryYear:(NSString*)expiryYear
                                                                        cvv:(NSString*)cvv
                                                              andCardHolder:(NSString*)cardHolder {
  return hlv::testing::make<PLVCreditCardPaymentInstrument>(
      @{@"pan" : pan, @"expiryMonth" : expiryMonth, @"expiryYear" : expiryYear});
}
@end

@implementation PLVCreditCardPaymentInstrument
RECORD FIELD(identifier) FIELD(pan) FIELD(cardBrand) FIELD(expiryMonth) FIELD(expiryYear) -
    (NSUInteger)state {
  return [[fieldsOf(self) objectForKey:@"state"] unsignedIntegerValue];
}
@end

@implementation PLVInAppClient
+ (PLVInAppClient*)sharedInstance {
  static PLVInAppClient* client = [self new];
  return client;
}
- (void)registerWithAPIKey:(NSString*)key {
  note(@"provider key %@", key);
}
- (void)createUserToken:(NSString*)email
    withPaymentInstrument:(PLVPaymentInstrument*)paymentInstrument
               andUseCase:(NSString*)useCase
            andCompletion:(hlv::testing::TokenBlock)completion {
  note(@"provider token for %@, %@", email, useCase);
  TestHost::shared().tokens.hold(completion);
}
- (void)addPaymentInstrument:(PLVPaymentInstrument*)paymentInstrument
                forUserToken:(NSString*)userToken
                  andUseCase:(NSString*)useCase
               andCompletion:(hlv::testing::ErrorBlock)completion {
  note(@"provider add under %@, %@", userToken, useCase);
  [TestHost::shared().lastToken release];
  TestHost::shared().lastToken = [userToken retain];
  TestHost::shared().adds.hold(completion);
}
- (void)getPaymentInstrumentsList:(NSString*)userToken
                       andUseCase:(NSString*)useCase
                    andCompletion:(hlv::testing::InstrumentsBlock)completion {
  note(@"provider list under %@, %@", userToken, useCase);
  TestHost::shared().lists.hold(completion);
}
- (void)removePaymentInstrument:(PLVPaymentInstrument*)paymentInstrument
                    fromUseCase:(NSString*)useCase
                   forUserToken:(NSString*)userToken
                  andCompletion:(hlv::testing::ErrorBlock)completion {
  note(@"provider remove %@ under %@, %@", [fieldsOf(paymentInstrument) objectForKey:@"identifier"],
       userToken, useCase);
  TestHost::shared().removals.hold(completion);
}
@end
