// Enabling, the synchroniser, the finder and the two records, through their selectors.
#include "Tests/ObjC/ObjCTest.h"

/// An app's own kit class: it has an entry of its own.
@interface TestSubkit : HLVSDKPayleven
@end
@implementation TestSubkit
- (void)setUpPaymentManager {
  hlv::testing::TestHost::shared().trace.push_back("setUpPaymentManager");
}
- (void)synchronizePaymentInstruments {
  hlv::testing::TestHost::shared().trace.push_back("synchronizePaymentInstruments");
}
@end

/// The kit's synchroniser, watched.
@interface TestWatchedSynchronizer : HLVSDKPaylevenPaymentInstrumentsSynchronizer
@end
@implementation TestWatchedSynchronizer
- (void)setSynchronizing:(BOOL)synchronizing {
  hlv::testing::TestHost::shared().trace.push_back(synchronizing ? "begins" : "ends");
  [super setSynchronizing:synchronizing];
}
- (void)fetchAllPaylevenPaymentInstrumentsForGuest:(HLVSDKGuest*)guest
                                        completion:(void (^)(NSArray<HLVSDKPLVPaymentInstrument*>*,
                                                             NSError*))completion {
  completion(@[ [[HLVSDKPLVPaymentInstrument new] autorelease] ], nil);
}
- (BOOL)isCreditCardExistsInArray:(NSArray<HLVSDKCreditCard*>*)cards
       relatedToPaymentInstrument:(HLVSDKPLVPaymentInstrument*)paymentInstrument {
  hlv::testing::TestHost::shared().trace.push_back("asked");
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

namespace hlv::testing {
namespace {

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
  HLVSDKPaylevenKitConfiguration* const copy = [[record copy] autorelease];
  EXPECT_NE(copy, record);
  EXPECT_EQ([copy paymentKey], [record paymentKey]) << "not copied again";
  EXPECT_EQ([[HLVSDKPaylevenKitConfiguration configurationWithBlock:nil] paymentKey], nil);
}

TEST_F(EnablingTest, FaultsOfTheConfigurationAreAssertedAndNothingIsCreated) {
  id const noKey = [HLVSDKPaylevenKitConfiguration configurationWithBlock:nil];
  const std::pair<NSArray*, const char*> rows[] = {
      {@[], "assert Configuration must have HLVSDKPaylevenKit in kits array"},
      {@[ [TestKitEntry entryWithKit:[NSObject class] configuration:noKey] ],
       "assert Configuration must have HLVSDKPaylevenKit in kits array"},
      {@[ [TestKitEntry entryWithKit:[HLVSDKPayleven class] configuration:@"text"] ],
       "assert Configuration for PaylevenKit must be kind of HLVSDKPaylevenKitConfiguration class"},
      {@[ [TestKitEntry entryWithKit:[HLVSDKPayleven class] configuration:noKey] ],
       "assert Configuration for PaylevenKit must have payment key"}};
  for (const auto& [entries, said] : rows) {
    [HLVSDKPayleven enableWithConfiguration:configurationWithEntries(entries)];
    EXPECT_EQ(host.takeTrace(), said);
  }
  EXPECT_EQ([HLVSDKPayleven sharedInstance], nil);
  EXPECT_EQ([HLVSDKPaymentManager sharedManager], nil);
}

TEST_F(EnablingTest, TheSharedInstanceAndAllThatItHoldsKeepTheirIdentity) {
  HLVSDKConfiguration* const configuration = configurationWithKey(@"key");
  [HLVSDKPayleven enableWithConfiguration:configuration];
  EXPECT_EQ(host.takeTrace(), "provider key key");
  HLVSDKPayleven* const kit = [HLVSDKPayleven sharedInstance];
  [HLVSDKPayleven enableWithConfiguration:configurationWithKey(@"other")];
  EXPECT_EQ([HLVSDKPayleven sharedInstance], kit);
  EXPECT_EQ(host.takeTrace(), "");
  EXPECT_EQ([kit configuration], configuration);
  EXPECT_EQ([kit kitConfiguration], [[[configuration kits] objectAtIndex:0] configuration]);
  EXPECT_EQ([kit currentGuest], guest);
  EXPECT_EQ([kit paymentInstrumentManager], [HLVSDKPaymentManager sharedManager]);
  EXPECT_EQ([kit paymentInstrumentManager], [kit paymentInstrumentManager]);
  id const manager = [kit paymentInstrumentManager];
  [kit setUpPaymentManager];
  EXPECT_NE([kit paymentInstrumentManager], manager);
  [HLVSDKPayleven setSharedInstance:nil];
  EXPECT_EQ([HLVSDKPayleven sharedInstance], nil);
  [HLVSDKPayleven setSharedInstance:kit];
  EXPECT_EQ([HLVSDKPayleven sharedInstance], kit);
  [kit start];
}

TEST_F(EnablingTest, ASubclassLooksForItsOwnEntryAndTheLastOneWins) {
  const auto record = [](NSString* key) {
    return [HLVSDKPaylevenKitConfiguration
        configurationWithBlock:^(HLVSDKMutablePaylevenKitConfiguration* configuration) {
          configuration.paymentKey = key;
        }];
  };
  [TestSubkit enableWithConfiguration:configurationWithEntries(@[
                [TestKitEntry entryWithKit:[TestSubkit class] configuration:record(@"first")],
                [TestKitEntry entryWithKit:[TestSubkit class] configuration:record(@"last")],
                [TestKitEntry entryWithKit:[HLVSDKPayleven class]
                             configuration:record(@"base")]
              ])];
  EXPECT_EQ(host.takeTrace(), "provider key last");
}

TEST_F(EnablingTest, NotificationsReachTheSynchroniserThatTheAppPutInPlace) {
  enable();
  [fieldsOf(guest) setObject:@"tok" forKey:@"paylevenToken"];
  TestSynchronizer* const own = [[TestSynchronizer new] autorelease];
  [[HLVSDKPayleven sharedInstance] setPaymentInstrumentsSynchronizer:own];
  EXPECT_EQ([[HLVSDKPayleven sharedInstance] paymentInstrumentsSynchronizer], own);
  const struct {
    NSString* name;
    NSDictionary* userInfo;
    bool starts;
  } rows[] = {{@"UIApplicationWillEnterForegroundNotification", nil, true},
              {@"authorization", @{@"authorized" : @(YES)}, true},
              {@"authorization", @{@"authorized" : @(NO)}, false},
              {@"authorization", nil, false},
              {@"reachability", @{@"state" : @2, @"before" : @1}, true},
              {@"reachability", @{@"state" : [NSDecimalNumber one], @"before" : @2.0f}, true},
              {@"reachability", @{@"state" : @(UINT64_MAX - 253), @"before" : @1}, true},
              {@"reachability", @{@"state" : @0, @"before" : @1}, false},
              {@"reachability", @{@"state" : @1, @"before" : @257}, false}};
  for (const auto& row : rows) {
    own->received = nil;
    [[NSNotificationCenter defaultCenter] postNotificationName:row.name
                                                        object:nil
                                                      userInfo:row.userInfo];
    EXPECT_EQ(own->received, row.starts ? guest : nil) << [row.name UTF8String];
  }
  own->received = nil;
  [HLVSDKPayleven resetSharedInstance];
  [[NSNotificationCenter defaultCenter]
      postNotificationName:@"UIApplicationWillEnterForegroundNotification"
                    object:nil];
  EXPECT_EQ(own->received, guest) << "the pool still holds the instance";
}

TEST_F(EnablingTest, WhatTheFacadeDoesByItselfIsAMessage) {
  TestSubkit* const kit = [[[TestSubkit alloc] initWithConfiguration:nil
                                            paylevenKitConfiguration:nil] autorelease];
  EXPECT_EQ(host.takeTrace(), "setUpPaymentManager");
  [[NSNotificationCenter defaultCenter]
      postNotificationName:@"UIApplicationWillEnterForegroundNotification"
                    object:nil];
  EXPECT_EQ(host.takeTrace(), "synchronizePaymentInstruments");
  EXPECT_EQ([kit paymentInstrumentManager], nil);
}

TEST_F(EnablingTest, AnObjectThatIsNotSetUpDoesNothing) {
  [[HLVSDKPayleven alloc] release];
  HLVSDKPayleven* const idle = [[HLVSDKPayleven new] autorelease];
  [fieldsOf(guest) setObject:@"tok" forKey:@"paylevenToken"];
  [[NSNotificationCenter defaultCenter]
      postNotificationName:@"UIApplicationWillEnterForegroundNotification"
                    object:nil];
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
  EXPECT_EQ(host.takeTrace(), "");
}

class SynchronizerTest : public ObjCTest {
 protected:
  SynchronizerTest() { [fieldsOf(guest) setObject:@"tok" forKey:@"paylevenToken"]; }
  void answerLists(NSArray* first) {
    host.lists.answer(first, (NSError*)nil);
    host.lists.answer((NSArray*)nil, (NSError*)nil);
    host.lists.answer((NSArray*)@[], (NSError*)nil);
  }
  HLVSDKPaylevenPaymentInstrumentsSynchronizer* const synchronizer =
      [[[HLVSDKPaylevenPaymentInstrumentsSynchronizer alloc]
          initWithAPIManager:[HLVSDKAPIManager manager]
              paylevenClient:[PLVInAppClient sharedInstance]] autorelease];
};

TEST_F(SynchronizerTest, WhatNoCardStandsForIsRemovedAndTheMainThreadHearsOfIt) {
  [synchronizer synchronizePaymentInstrumentsForGuest:guest completion:successHeard()];
  EXPECT_TRUE([synchronizer isSynchronizing]);
  const std::string said = host.takeTrace();
  EXPECT_NE(
      said.find("remote 4 -[HLVSDKPaylevenPaymentInstrumentsSynchronizer "
                "synchronizePaymentInstrumentsForGuest:completion:]: Will start synchrozation "
                "between external payment system and halvo"),
      std::string::npos);
  EXPECT_NE(said.find("provider list under tok, private\nprovider list under tok, business\n"
                      "provider list under tok, default\nbackend cards of guest@example.com"),
            std::string::npos);
  host.cardFetches.answer((NSArray*)@[], (NSError*)nil);
  answerLists(@[ instrument ]);
  runMainLoopUntil([&] { return received.count == 1; });
  EXPECT_TRUE(received.success);
  EXPECT_TRUE(received.onMainThread);
  EXPECT_EQ(host.removals.size(), 1u);
  EXPECT_NE(host.takeTrace().find("provider remove plv-1 under tok, private"), std::string::npos);
}

TEST_F(SynchronizerTest, AFailureComesWithTheBackendsErrorAndLeavesTheFlagSet) {
  NSError* const refusal = makeError(@"refused");
  [synchronizer synchronizePaymentInstrumentsForGuest:guest completion:successHeard()];
  answerLists(@[ instrument ]);
  host.cardFetches.answer((NSArray*)nil, refusal);
  runMainLoopUntil([&] { return received.count == 1; });
  EXPECT_FALSE(received.success);
  EXPECT_EQ(received.error, refusal);
  EXPECT_TRUE([synchronizer isSynchronizing]);
  EXPECT_NE(host.takeTrace().find("payment instruments. for developers: refused"),
            std::string::npos);
  [synchronizer synchronizePaymentInstrumentsForGuest:guest];
  EXPECT_EQ(host.takeTrace(), "");
  [synchronizer setSynchronizing:NO];
  [synchronizer synchronizePaymentInstrumentsForGuest:nil];
  EXPECT_EQ(host.takeTrace(),
            "assert parameter guest: Can not synchronize payment instruments for guest if guest is "
            "nil");
}

TEST_F(SynchronizerTest, ItsStepsAreMessages) {
  TestWatchedSynchronizer* const own = [[[TestWatchedSynchronizer alloc]
      initWithAPIManager:[HLVSDKAPIManager manager]
          paylevenClient:[PLVInAppClient sharedInstance]] autorelease];
  [own synchronizePaymentInstrumentsForGuest:guest completion:successHeard()];
  EXPECT_NE(host.takeTrace().find("begins\nbackend cards"), std::string::npos);
  host.cardFetches.answer((NSArray*)@[ storedCard ], (NSError*)nil);
  runMainLoopUntil([&] { return received.count == 1 && ![own isSynchronizing]; });
  const std::string said = host.takeTrace();
  EXPECT_NE(said.find("asked"), std::string::npos);
  EXPECT_EQ(said.find("provider remove"), std::string::npos);
  EXPECT_NE(said.find("ends"), std::string::npos);
}

TEST_F(SynchronizerTest, PairsQueuesAndServicesAreTheAppsOwn) {
  NSMutableArray* const keep = kept;
  [synchronizer fetchAllPaylevenPaymentInstrumentsForGuest:guest
                                                completion:^(NSArray* all, NSError*) {
                                                  [keep addObject:all];
                                                }];
  answerLists(@[ instrument ]);
  runMainLoopUntil([&] { return [kept count] == 1; });
  NSArray* const pairs = [kept objectAtIndex:0];
  ASSERT_EQ([pairs count], 1u);
  HLVSDKPLVPaymentInstrument* const pair = [pairs objectAtIndex:0];
  EXPECT_EQ([pair paymentInstrument], instrument);
  EXPECT_TRUE([[pair useCase] isEqual:@"private"]);
  EXPECT_FALSE([synchronizer isCreditCardExistsInArray:@[ storedCard ]
                            relatedToPaymentInstrument:pair])
      << "another use case";
  [pair setUseCase:@"default"];
  EXPECT_TRUE([synchronizer isCreditCardExistsInArray:@[ storedCard ]
                           relatedToPaymentInstrument:pair]);
  EXPECT_FALSE([synchronizer isCreditCardExistsInArray:nil relatedToPaymentInstrument:nil]);
  HLVSDKQueue queue = [[NSOperationQueue new] autorelease];
  EXPECT_TRUE([[[synchronizer synchronizationQueue] name]
      hasSuffix:@".HLVSDKPaylevenKit.HLVSDKPaylevenPaymentInstrumentsSynchronizer"]);
  [synchronizer setSynchronizationQueue:queue];
  EXPECT_EQ([synchronizer synchronizationQueue], queue);
  EXPECT_EQ([synchronizer apiManager], [HLVSDKAPIManager manager]);
  EXPECT_EQ([synchronizer paylevenClient], [PLVInAppClient sharedInstance]);
}

using FinderTest = ObjCTest;

TEST_F(FinderTest, FindsAnObjectOfTheListAndNamesWhatIsMissing) {
  using Finder = HLVSDKPaylevenPaymentInstrumentFinder;
  NSArray* const list = @[ make<PLVCreditCardPaymentInstrument>(@{}), instrument ];
  EXPECT_EQ([Finder findPaylevenPaymentInstrumentIn:list matchesHalvoPaymentInstrument:card],
            instrument);
  EXPECT_EQ([Finder findPaylevenPaymentInstrumentIn:list
                              matchesLastFourDigits:@"1111"
                                           andBrand:@"visa"],
            instrument);
  EXPECT_EQ([Finder findPaylevenPaymentInstrumentIn:list
                              matchesLastFourDigits:@"1111"
                                           andBrand:@"VISA"],
            nil);
  EXPECT_EQ([Finder findPaylevenPaymentInstrumentIn:nil matchesHalvoPaymentInstrument:nil], nil);
  EXPECT_EQ([Finder findPaylevenPaymentInstrumentIn:nil matchesLastFourDigits:nil andBrand:nil],
            nil);
  EXPECT_EQ(host.takeTrace(),
            "assert parameter halvoInstrument: (null)\nassert parameter lastFourDigits: (null)");
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
  EXPECT_TRUE([[fieldsOf(made) objectForKey:@"provider"] isEqual:@0]);
  id const decimal = [NSDecimalNumber one];
  id const date = [NSDate date];
  [host.requestBody release];
  host.requestBody = [@{
    @"credit_card" : @{@"exact" : decimal, @"flags" : @[ @(YES), @7, [NSNull null], date ]},
    @"large" : @(UINT64_MAX)
  } retain];
  NSDictionary* const sent = @{
    @"credit_card" : @{
      @"exact" : decimal,
      @"flags" : @[ @(YES), @7, [NSNull null], date ],
      @"plv_token" : @"tok"
    },
    @"large" : @(UINT64_MAX)
  };
  EXPECT_TRUE([[made JSONRepresentation] isEqual:sent]);
  [made setPaylevenToken:nil];
  EXPECT_TRUE([[made JSONRepresentation] isEqual:host.requestBody]);
  [host.requestBody release], host.requestBody = nil;
  EXPECT_EQ([made JSONRepresentation], nil);
}

TEST_F(RequestTest, AsksTheHostFirst) {
  NSError* error = nil;
  EXPECT_TRUE([request(@"tok") isValid:&error]);
  EXPECT_FALSE([request(@"") isValid:&error]);
  EXPECT_TRUE([[error localizedDescription] isEqual:@"paylevenToken '': (null)"]);
  EXPECT_FALSE([request(nil) isValid:nullptr]);
  host.requestError = [makeError(@"host") retain];
  EXPECT_FALSE([request(@"") isValid:&error]);
  EXPECT_EQ(error, host.requestError);
}

TEST(VersionTest, IsWhatTheFrameworkExports) {
  EXPECT_EQ(HLVSDKPaylevenKitVersionNumber, 1.0);
  EXPECT_STREQ(reinterpret_cast<const char*>(HLVSDKPaylevenKitVersionString),
               "@(#)PROGRAM:HLVSDKPaylevenKit  PROJECT:HLVSDKPaylevenKit-1\n");
}

}  // namespace
}  // namespace hlv::testing
