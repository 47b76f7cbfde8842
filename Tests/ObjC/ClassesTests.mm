// Enabling, the synchroniser, the finder and the two records, through their selectors.
#include "ObjC/Binding/Values.h"
#include "ObjC/HostClasses/Configuration.h"
#include "Tests/ObjC/ObjCTest.h"

using namespace objc_tests;
using hlv::host_classes::configurationWithEntries;
using hlv::host_classes::kitEntry;

/// An app's own kit class: it has an entry of its own.
@interface TestSubkit : HLVSDKPayleven
@end
@implementation TestSubkit
+ (instancetype)sharedInstanceWithConfiguration:(HLVSDKConfiguration*)configuration
                       paylevenKitConfiguration:(HLVSDKPaylevenKitConfiguration*)kitConfiguration {
  return nil;
}
- (void)setUpPaymentManager {
  note("setUpPaymentManager");
}
- (void)setUpPaymentInstrumentsSynchronizer {
  note("setUpPaymentInstrumentsSynchronizer");
}
- (void)synchronizePaymentInstruments {
  note("synchronizePaymentInstruments");
}
- (NSString*)paymentKey {
  return @"of any object";
}
@end

/// The kit's synchroniser, watched.
@interface TestWatchedSynchronizer : HLVSDKPaylevenPaymentInstrumentsSynchronizer
@end
@implementation TestWatchedSynchronizer
- (void)setSynchronizing:(BOOL)synchronizing {
  note(synchronizing ? "begins" : "ends");
  [super setSynchronizing:synchronizing];
}
- (void)fetchAllPaylevenPaymentInstrumentsForGuest:(HLVSDKGuest*)guest
                                        completion:(void (^)(NSArray<HLVSDKPLVPaymentInstrument*>*,
                                                             NSError*))completion {
  completion(@[ [[HLVSDKPLVPaymentInstrument new] autorelease] ], nil);
}
- (BOOL)isCreditCardExistsInArray:(NSArray<HLVSDKCreditCard*>*)cards
       relatedToPaymentInstrument:(HLVSDKPLVPaymentInstrument*)paymentInstrument {
  note("asked");
  return [cards count] == 1 && paymentInstrument;
}
@end

/// An app's own synchroniser.
@interface TestSynchronizer : NSObject <HLVSDKPaymentInstrumentsSynchronizer> {
 @public
  id received;
}
@end
@implementation TestSynchronizer
- (void)synchronizePaymentInstrumentsForGuest:(HLVSDKGuest*)guest {
  received = guest;
}
- (void)synchronizePaymentInstrumentsForGuest:(HLVSDKGuest*)guest
                                   completion:(void (^)(BOOL, NSError*))completion {
  received = guest;
  if (completion) completion(YES, nil);
}
@end

namespace {

NSString* const foreground = @"UIApplicationWillEnterForegroundNotification";

NSDictionary* changed(id before, id state) {
  return @{
    HLVSDKReachabilityDidChangeReachabilityNotificationPreviousStateKey : before,
    HLVSDKReachabilityDidChangeReachabilityNotificationStateKey : state
  };
}

using EnablingTest = ObjCTest;

TEST_F(EnablingTest, AConfigurationBlockMakesAnImmutableRecord) {
  NSMutableString* const key = [NSMutableString stringWithString:@"key"];
  HLVSDKPaylevenKitConfiguration* const record = [HLVSDKPaylevenKitConfiguration
      configurationWithBlock:^(HLVSDKMutablePaylevenKitConfiguration* configuration) {
        configuration.paymentKey = key;
        EXPECT_TRUE([[configuration copy] autorelease] != configuration);
      }];
  [key setString:@"changed"];
  EXPECT_TRUE([[record paymentKey] isEqual:@"key"]);
  EXPECT_FALSE([record isKindOfClass:[HLVSDKMutablePaylevenKitConfiguration class]]);
  static_assert(
      std::is_same_v<decltype([HLVSDKMutablePaylevenKitConfiguration configurationWithBlock:nil]),
                     HLVSDKPaylevenKitConfiguration*>);
  HLVSDKPaylevenKitConfiguration* const copy = [[record copy] autorelease];
  EXPECT_NE(copy, record);
  EXPECT_EQ([copy paymentKey], [record paymentKey]) << "not copied again";
  id const other = [[TestSubkit new] autorelease];
  EXPECT_EQ([[[[HLVSDKPaylevenKitConfiguration alloc] initWithConfiguration:other] autorelease]
                paymentKey],
            [other paymentKey]);
}

TEST_F(EnablingTest, TheSharedInstanceAndAllThatItHoldsKeepTheirIdentity) {
  HLVSDKConfiguration* const configuration = configurationWithKey(@"key");
  [HLVSDKPayleven enableWithConfiguration:configuration];
  EXPECT_EQ(host->takeTrace(), "host current guest\nprovider register 'key'");
  HLVSDKPayleven* const kit = [HLVSDKPayleven sharedInstance];
  [HLVSDKPayleven enableWithConfiguration:configurationWithKey(@"other")];
  EXPECT_EQ([HLVSDKPayleven sharedInstance], kit);
  EXPECT_EQ(host->takeTrace(), "");
  EXPECT_EQ([kit configuration], configuration);
  EXPECT_EQ([kit kitConfiguration], [[[configuration kits] objectAtIndex:0] configuration]);
  EXPECT_EQ([kit currentGuest], guest);
  EXPECT_EQ([kit paymentInstrumentManager], [HLVSDKPaymentManager sharedManager]);
}

TEST_F(EnablingTest, TheLastEntryOfTheReceiversClassCountsIfItsConfigurationIsOfTheKits) {
  [HLVSDKPayleven enableWithConfiguration:configurationWithEntries(
                                              @[ kitEntry([HLVSDKPayleven class], @"a text") ])];
  EXPECT_EQ(host->takeTrace(), "assert \"Configuration for PaylevenKit must be kind of "
                               "HLVSDKPaylevenKitConfiguration class\"");
  [TestSubkit enableWithConfiguration:configurationWithEntries(@[
                kitEntry([TestSubkit class], recordWithKey(@"first")),
                kitEntry([TestSubkit class], recordWithKey(@"")),
                kitEntry([HLVSDKPayleven class], recordWithKey(@"base"))
              ])];
  EXPECT_EQ(host->takeTrace(), "host current guest\nprovider register ''");
}

TEST_F(EnablingTest, NotificationsReachTheSynchroniserThatTheAppPutInPlace) {
  enable();
  fake.guest->token = "tok";
  NSString* const reachability = HLVSDKReachabilityDidChangeReachabilityStateNotification;
  NSString* const authorization = kHLVSDKDidChangeAuthorizationStatusNotification;
  NSString* const isAuthorized = kHLVSDKNotificationUserInfoIsAuthorizedKey;
  TestSynchronizer* const own = [[TestSynchronizer new] autorelease];
  [[HLVSDKPayleven sharedInstance] setPaymentInstrumentsSynchronizer:own];
  EXPECT_EQ([[HLVSDKPayleven sharedInstance] paymentInstrumentsSynchronizer], own);
  const struct {
    NSString* name;
    NSDictionary* userInfo;
    bool starts;
  } rows[] = {{foreground, nil, true},
              {authorization, @{isAuthorized : @(YES)}, true},
              {authorization, @{isAuthorized : @(NO)}, false},
              {reachability, changed(@1, @2), true},
              {reachability, changed(@1, @(UINT64_MAX - 253)), true},
              {reachability, changed(@257, @1), false}};
  for (const auto& row : rows) {
    const auto starts = [&] {
      own->received = nil;
      post(row.name, row.userInfo);
      return own->received == guest;
    };
    EXPECT_EQ(starts(), row.starts) << [row.name UTF8String];
    host->session->authorized = false;
    EXPECT_EQ(starts(), row.starts && row.name == authorization) << "without a session";
    host->session->authorized = true;
    fake.guest->token = "";
    EXPECT_FALSE(starts()) << "without a token";
    fake.guest->token = "tok";
  }
}

TEST_F(EnablingTest, WhatTheFacadeDoesByItselfIsAMessage) {
  TestSubkit* const kit = [[[TestSubkit alloc] initWithConfiguration:nil
                                            paylevenKitConfiguration:nil] autorelease];
  EXPECT_EQ(host->takeTrace(),
            "host current guest\nsetUpPaymentManager\nsetUpPaymentInstrumentsSynchronizer");
  post(foreground);
  EXPECT_EQ(host->takeTrace(), "synchronizePaymentInstruments");
  EXPECT_EQ([kit paymentInstrumentManager], nil);
}

TEST_F(EnablingTest, AnObjectThatIsNotSetUpDoesNothing) {
  [[HLVSDKPayleven alloc] release];
  HLVSDKPayleven* const idle = [[HLVSDKPayleven new] autorelease];
  fake.guest->token = "tok";
  post(foreground);
  EXPECT_EQ([idle currentGuest], nil);
  // Stand-ins: an object that nobody initialised, and one of another class.
  for (id standIn in @[ [[HLVSDKPayleven alloc] autorelease], @"a mock" ]) {
    [HLVSDKPayleven setSharedInstance:standIn];
    EXPECT_EQ([HLVSDKPayleven sharedInstance], standIn);
  }
  [HLVSDKPayleven setSharedInstance:[[HLVSDKPayleven alloc] autorelease]];
  EXPECT_EQ([HLVSDKPaymentManager sharedManager], nil);
  HLVSDKAddPaylevenCreditCardRequestInfo* const empty =
      [[HLVSDKAddPaylevenCreditCardRequestInfo new] autorelease];
  [empty setPaylevenToken:@"tok"];
  EXPECT_TRUE([[empty paylevenToken] isEqual:@"tok"]);
  EXPECT_EQ([empty JSONRepresentation], nil) << "a missing body of the host stays missing";
  EXPECT_EQ(host->takeTrace(), "");
}

class SynchronizerTest : public ObjCTest {
 protected:
  SynchronizerTest() { fake.guest->token = "tok"; }
  void answerLists() {
    provider.lists.answer(Instruments{fake.instrument}, nullptr);
    provider.lists.answer(std::nullopt, nullptr);
    provider.lists.answer(Instruments{}, nullptr);
  }
  /// To be released by the caller.
  template <class Synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer>
  static Synchronizer* newSynchronizer() {
    return [[Synchronizer alloc] initWithAPIManager:[HLVSDKAPIManager manager]
                                     paylevenClient:[PLVInAppClient sharedInstance]];
  }
};

TEST_F(SynchronizerTest, WhatNoCardStandsForIsRemovedAlthoughTheSynchroniserIsReleasedMeanwhile) {
  auto* const synchronizer = newSynchronizer();
  @autoreleasepool {
    [synchronizer synchronizePaymentInstrumentsForGuest:guest completion:successReceiver];
    [synchronizer release];
  }
  EXPECT_TRUE([synchronizer isSynchronizing]) << "its run keeps it";
  backend.cardFetches.answer(Cards{}, nullptr);
  answerLists();
  runMainLoopUntil([&] { return received.count == 1; });
  EXPECT_TRUE(received.success);
  EXPECT_TRUE(received.onMainThread);
  EXPECT_EQ(provider.removals.count(), 1u);
  EXPECT_NE(host->takeTrace().find("provider remove plv-1 from private of tok"), std::string::npos);
}

TEST_F(SynchronizerTest, ItsStepsAreMessages) {
  auto* const own = [newSynchronizer<TestWatchedSynchronizer>() autorelease];
  [own synchronizePaymentInstrumentsForGuest:guest completion:successReceiver];
  EXPECT_NE(host->takeTrace().find("completion:]\nbegins\nbackend fetch cards"), std::string::npos);
  backend.cardFetches.answer(Cards{fake.storedCard}, nullptr);
  runMainLoopUntil([&] { return received.count == 1 && ![own isSynchronizing]; });
  const std::string said = host->takeTrace();
  EXPECT_NE(said.find("asked"), std::string::npos);
  EXPECT_EQ(said.find("provider remove"), std::string::npos);
  EXPECT_NE(said.find("ends"), std::string::npos);
}

TEST_F(SynchronizerTest, PairsQueuesAndServicesAreTheAppsOwn) {
  auto* const synchronizer = [newSynchronizer() autorelease];
  NSMutableArray* const keep = received.kept;
  [synchronizer fetchAllPaylevenPaymentInstrumentsForGuest:guest
                                                completion:^(NSArray* all, NSError*) {
                                                  [keep addObject:all];
                                                }];
  answerLists();
  runMainLoopUntil([&] { return [keep count] == 1; });
  NSArray* const pairs = [keep objectAtIndex:0];
  ASSERT_EQ([pairs count], 1u);
  HLVSDKPLVPaymentInstrument* const pair = [pairs objectAtIndex:0];
  EXPECT_EQ(behind<hlv::PLVCreditCardPaymentInstrument>([pair paymentInstrument]), fake.instrument);
  EXPECT_TRUE([[pair useCase] isEqual:@"private"]);
  EXPECT_FALSE([synchronizer isCreditCardExistsInArray:@[ storedCard ]
                            relatedToPaymentInstrument:pair])
      << "another use case";
  NSMutableString* const useCase = [NSMutableString stringWithString:@"default"];
  [pair setUseCase:useCase];
  [useCase setString:@"changed"];
  EXPECT_TRUE([synchronizer isCreditCardExistsInArray:@[ storedCard ]
                           relatedToPaymentInstrument:pair]);
  HLVSDKQueue queue = [[NSOperationQueue new] autorelease];
  EXPECT_TRUE([[[synchronizer synchronizationQueue] name]
      hasSuffix:@".HLVSDKPaylevenKit.HLVSDKPaylevenPaymentInstrumentsSynchronizer"]);
  [synchronizer setSynchronizationQueue:queue];
  EXPECT_EQ([synchronizer synchronizationQueue], queue);
}

using FinderTest = ObjCTest;

TEST_F(FinderTest, FindsAnObjectOfTheListAndNamesWhatIsMissing) {
  using Finder = HLVSDKPaylevenPaymentInstrumentFinder;
  NSArray* const list = @[ instrument ];
  EXPECT_EQ([Finder findPaylevenPaymentInstrumentIn:list matchesHalvoPaymentInstrument:card],
            instrument);
  EXPECT_EQ([Finder findPaylevenPaymentInstrumentIn:list
                              matchesLastFourDigits:@"1111"
                                           andBrand:@"visa"],
            instrument);
  EXPECT_EQ([Finder findPaylevenPaymentInstrumentIn:nil matchesLastFourDigits:nil andBrand:nil],
            nil);
  EXPECT_EQ(host->takeTrace(), "assert parameter lastFourDigits: nil");
}

class RequestTest : public ObjCTest {
 protected:
  HLVSDKAddPaylevenCreditCardRequestInfo* request(NSString* token) {
    return [[[HLVSDKAddPaylevenCreditCardRequestInfo alloc] initWithPaymentInstrument:card
                                                                       billingAddress:address
                                                                        paylevenToken:token]
        autorelease];
  }
};

TEST_F(RequestTest, ExtendsTheHostsBodyAndLeavesTheRestAsItIs) {
  NSMutableString* const token = [NSMutableString stringWithString:@"tok"];
  HLVSDKAddPaylevenCreditCardRequestInfo* const made = request(token);
  [token setString:@"changed"];
  EXPECT_TRUE([[made paylevenToken] isEqual:@"tok"]);
  NSDictionary* const ofCard = @{@"flags" : @[ @(YES), @7, [NSNull null], [NSDate date] ]};
  NSDictionary* const ofHost = @{@"credit_card" : ofCard, @"large" : @(UINT64_MAX), @"half" : @0.5};
  *host->requestBody = hlv::objc::fromNSDictionary(ofHost);
  NSMutableDictionary* const extended = [[ofCard mutableCopy] autorelease];
  [extended setObject:@"tok" forKey:@"plv_token"];
  NSMutableDictionary* const sent = [[ofHost mutableCopy] autorelease];
  [sent setObject:extended forKey:@"credit_card"];
  EXPECT_TRUE([[made JSONRepresentation] isEqual:sent]);
  EXPECT_FALSE([[made JSONRepresentation] isKindOfClass:[NSMutableDictionary class]]);
  host->requestBody.reset();
  EXPECT_EQ(request(@"tok"), nil) << "the host's base makes no object";
}

TEST_F(RequestTest, AsksTheHostFirst) {
  NSError* error = nil;
  EXPECT_TRUE([request(@"tok") isValid:&error]);
  EXPECT_FALSE([request(@"") isValid:&error]);
  EXPECT_EQ(descriptionOf(error), "localized invalid 'paylevenToken' value '', message nil");
  NSError* const refusal = makeError(@"host");
  host->requestError = hlv::objc::fromNSError(refusal);
  EXPECT_FALSE([request(@"") isValid:&error]);
  EXPECT_EQ(error, refusal);
}

}  // namespace
