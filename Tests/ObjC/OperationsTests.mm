// Every operation through its selectors: what is called, what comes back, and on which thread.
#include "ObjC/Binding/AnyString.h"
#include "Tests/ObjC/ObjCTest.h"

/// An app's own manager, which writes down what it is sent.
@interface TestManager : HLVSDKPaylevenPaymentInstrumentManager
@end
@implementation TestManager
- (void)noteStep:(SEL)step {
  hlv::testing::TestHost::shared().trace.push_back([NSStringFromSelector(step) UTF8String]);
}
- (BOOL)isConnectionAvailable {
  [self noteStep:_cmd];
  return [super isConnectionAvailable];
}
#define STEP(declaration, call) \
  -declaration {                \
    [self noteStep:_cmd];       \
    [super call];               \
  }
STEP((void)setConnectionAvaiable : (BOOL)available, setConnectionAvaiable : available)
STEP((void)handleReachabilityChangedNotification
     : (NSNotification*)notification, handleReachabilityChangedNotification
     : notification)
STEP((void)addFirstPaymentInstrument
     : (HLVSDKPaymentInstrument*)card billingAddress
     : (HLVSDKPaymentBillingAddress*)address forGuest
     : (HLVSDKGuest*)guest completion
     : (hlv::testing::GuestCardBlock)completion, addFirstPaymentInstrument
     : card billingAddress
     : address forGuest
     : guest completion
     : completion)
STEP((void)addNewPaymentInstrument
     : (HLVSDKPaymentInstrument*)card billingAddress
     : (HLVSDKPaymentBillingAddress*)address forGuest
     : (HLVSDKGuest*)guest completion
     : (hlv::testing::GuestCardBlock)completion, addNewPaymentInstrument
     : card billingAddress
     : address forGuest
     : guest completion
     : completion)
STEP((void)addFirstPaymentInstrumentToPayleven
     : (HLVSDKPaymentInstrument*)card forGuestEmail
     : (NSString*)email completion
     : (hlv::testing::InstrumentBlock)completion, addFirstPaymentInstrumentToPayleven
     : card forGuestEmail
     : email completion
     : completion)
STEP((void)addNewPaymentInstrumentToPayleven
     : (HLVSDKPaymentInstrument*)card withPaylevenToken
     : (NSString*)token completion
     : (hlv::testing::InstrumentBlock)completion, addNewPaymentInstrumentToPayleven
     : card withPaylevenToken
     : token completion
     : completion)
STEP((void)processAddedPaymentInstrument
     : (HLVSDKPaymentInstrument*)card paylevenToken
     : (NSString*)token completion
     : (hlv::testing::InstrumentBlock)completion, processAddedPaymentInstrument
     : card paylevenToken
     : token completion
     : completion)
#undef STEP
- (void)observeValueForKeyPath:(NSString*)path
                      ofObject:(id)object
                        change:(NSDictionary*)change
                       context:(void*)context {
  hlv::testing::TestHost::shared().trace.push_back(
      [[NSString stringWithFormat:@"%@ is %@", path, [object valueForKey:path]] UTF8String]);
}
@end

namespace hlv::testing {
namespace {

class OperationsTest : public ObjCTest {
 protected:
  OperationsTest() { enable(); }
  static HLVSDKPaylevenPaymentInstrumentManager* manager() {
    return (HLVSDKPaylevenPaymentInstrumentManager*)[HLVSDKPaymentManager sharedManager];
  }
  void giveToken() { [fieldsOf(guest) setObject:@"tok" forKey:@"paylevenToken"]; }
  void giveCard() { [fieldsOf(guest) setObject:@[ storedCard ] forKey:@"creditCards"]; }
  void add() {
    [entryPoint addPaymentInstrument:card
                      billingAddress:address
                            forGuest:guest
                          completion:guestCardHeard()];
  }
  void remove(NSString* ID) {
    [entryPoint deletePaymentInstrumentWithID:ID
                                      useCase:@"default"
                                    fromGuest:guest
                                   completion:guestHeard()];
  }
  void answerList() {
    host.lists.answer((NSArray*)@[ instrument ], (NSError*)nil);
    host.takeTrace();
  }

  HLVSDKPaymentManager* const entryPoint = [[HLVSDKPaymentManager new] autorelease];
};

TEST_F(OperationsTest, AFirstCardCrossesBothServicesAndComesBackAsTheSameObjects) {
  add();
  EXPECT_EQ(host.takeTrace(), "provider token for guest@example.com, default");
  onAnotherThread([&] { host.tokens.answer(@"tok", (NSError*)nil); });
  EXPECT_EQ(host.takeTrace(), "provider list under tok, default");
  NSArray* const found = @[ instrument ];
  onAnotherThread([&] { host.lists.answer(found, (NSError*)nil); });
  runMainLoopUntil([&] { return host.cardAdds.size() == 1; });
  EXPECT_EQ(host.takeTrace(),
            "card is plv-1\nbackend token tok\nbackend add for guest@example.com");
  EXPECT_TRUE([host.request isKindOfClass:[HLVSDKAddPaylevenCreditCardRequestInfo class]]);
  EXPECT_EQ([fieldsOf(host.request) objectForKey:@"card"], card);
  EXPECT_EQ([fieldsOf(host.request) objectForKey:@"address"], address);
  EXPECT_TRUE([[fieldsOf(host.request) objectForKey:@"provider"] isEqual:@0]);
  NSDictionary* const sent =
      @{@"credit_card" : @{@"brand" : @"visa", @"plv_token" : @"tok"},
        @"kind" : @1.5};
  EXPECT_TRUE([[host.request JSONRepresentation] isEqual:sent]);
  onAnotherThread([&] {
    host.guestUpdates.answer((HLVSDKGuest*)nil, (NSError*)nil);
    host.cardAdds.answer((HLVSDKGuest*)nil, storedCard, (NSError*)nil);
  });
  runMainLoopUntil([&] { return received.count == 1; });
  EXPECT_TRUE(received.onMainThread);
  EXPECT_EQ(received.guest, guest);
  EXPECT_EQ(received.card, storedCard);
  EXPECT_EQ(received.error, nil);
}

TEST_F(OperationsTest, AFirstCardsFailuresNameWhatIsMissingAndPassErrorsThrough) {
  add();
  host.takeTrace();
  host.tokens.answer((NSString*)nil, (NSError*)nil);
  EXPECT_EQ(host.takeTrace(), "assert parameter userToken: (null)");
  EXPECT_TRUE([[received.error localizedDescription]
      isEqual:@"userToken: (null), -[HLVSDKPaylevenPaymentInstrumentManager "
              @"addFirstPaymentInstrumentToPayleven:forGuestEmail:completion:]"]);
  add();
  NSError* const refusal = makeError(@"refused");
  host.tokens.answer((NSString*)nil, refusal);
  EXPECT_EQ([[received.error userInfo] objectForKey:NSUnderlyingErrorKey], refusal);
  add();
  host.tokens.answer(@"tok", (NSError*)nil);
  answerList();
  host.cardAdds.answer((HLVSDKGuest*)nil, storedCard, (NSError*)nil);
  host.guestUpdates.answer((HLVSDKGuest*)nil, refusal);
  runMainLoopUntil([&] { return received.count == 3; });
  EXPECT_EQ(received.card, storedCard) << "a card and an error may come together";
  EXPECT_EQ(received.error, refusal);
}

TEST_F(OperationsTest, AnAddIsRefusedByTheCardItselfAndThenByTheNetwork) {
  host.network = 256;
  add();
  EXPECT_TRUE([[received.error domain] isEqual:@"URL"]);
  EXPECT_EQ([received.error code], 1);
  NSError* const invalid = makeError(@"invalid card");
  [fieldsOf(card) setObject:invalid forKey:@"error"];
  onAnotherThread([&] {
    @autoreleasepool {
      add();
    }
  });
  EXPECT_EQ(received.count, 1);
  runMainLoopUntil([&] { return received.count == 2; });
  EXPECT_TRUE(received.onMainThread);
  EXPECT_EQ(received.error, invalid);
  EXPECT_EQ(host.takeTrace(), "");
}

TEST_F(OperationsTest, AFurtherCardLogsItsFailuresToBothLoggers) {
  giveToken();
  add();
  EXPECT_EQ(host.takeTrace(), "provider add under tok, default");
  NSError* const refusal = makeError(@"refused");
  host.adds.answer(refusal);
  const std::string line =
      " 1 -[HLVSDKPaylevenPaymentInstrumentManager "
      "addNewPaymentInstrument:billingAddress:forGuest:completion:]_block_invoke: "
      "Failed to add new payment instrument. %@ = Failed to add new payment instrument. ";
  const std::string rendered = [[received.error description] UTF8String];
  EXPECT_EQ(host.takeTrace(), "remote" + line + rendered + "\nconsole" + line + rendered);
  EXPECT_EQ([[received.error userInfo] objectForKey:NSUnderlyingErrorKey], refusal);

  add();
  host.adds.answer((NSError*)nil);
  [fieldsOf(instrument) removeObjectForKey:@"identifier"];
  answerList();
  EXPECT_TRUE([[received.error localizedDescription]
      isEqual:@"identifier: Added instrument to external payment system doesn't have identifier, "
              @"-[HLVSDKPaylevenPaymentInstrumentManager "
              @"addNewPaymentInstrument:billingAddress:forGuest:completion:]_block_invoke"]);
}

TEST_F(OperationsTest, AFurtherCardReportsTheBackendsGuestAndNeverItsError) {
  giveToken();
  add();
  host.adds.answer((NSError*)nil);
  answerList();
  HLVSDKGuest* const updated = make<HLVSDKGuest>(@{});
  host.cardAdds.answer(updated, storedCard, makeError(@"refused"));
  EXPECT_EQ(received.guest, updated);
  EXPECT_EQ(received.card, storedCard);
  EXPECT_EQ(received.error, nil);
}

TEST_F(OperationsTest, ADeletionGoesToTheBackendFirstAndAsksForEverythingItNeeds) {
  remove(@"card-1");
  EXPECT_EQ(host.takeTrace(), "assert parameter guest.paylevenToken: (null)");
  EXPECT_TRUE([[received.error localizedDescription] hasPrefix:@"paymentToken: (null), -["]);
  giveToken();
  remove(nil);
  EXPECT_EQ(host.takeTrace(), "assert parameter halvoID: (null)");
  remove(@"card-1");
  EXPECT_TRUE([[received.error localizedDescription] hasPrefix:@"existedCard: Given guest must"]);
  giveCard();
  host.network = 0;
  remove(@"card-1");
  EXPECT_TRUE([[received.error domain] isEqual:@"URL"]);
  host.network = 2;
  remove(@"card-1");
  EXPECT_EQ(host.takeTrace(), "backend delete card-1 of guest@example.com");
  HLVSDKGuest* const updated = make<HLVSDKGuest>(@{@"paylevenToken" : @"tok2"});
  host.deletions.answer(updated, (NSError*)nil);
  EXPECT_EQ(host.takeTrace(), "provider list under tok2, default");
  host.lists.answer((NSArray*)@[ instrument ], (NSError*)nil);
  EXPECT_EQ(host.takeTrace(), "provider remove plv-1 under tok2, default");
  NSError* const refusal = makeError(@"refused");
  host.removals.answer(refusal);
  EXPECT_EQ(received.guest, updated);
  EXPECT_EQ([[received.error userInfo] objectForKey:NSUnderlyingErrorKey], refusal);
  EXPECT_EQ(received.count, 5);
}

TEST_F(OperationsTest, AnUpdateHandsOverTheVeryBlockThatItWasGiven) {
  const auto block = guestCardHeard();
  [entryPoint updatePaymentInstrument:@"card-1"
                       billingAddress:address
                             forGuest:guest
                           completion:block];
  EXPECT_EQ(host.takeTrace(), "backend update card-1 of guest@example.com");
  EXPECT_EQ((const void*)host.cardUpdates.oldest(), (const void*)block);
  NSDictionary* const fields =
      @{@"k0" : @"Street 1", @"k1" : @"Berlin", @"k2" : @"DE", @"k3" : @"10115"};
  EXPECT_TRUE([host.address isEqual:fields]);
  onAnotherThread([&] { host.cardUpdates.answer(guest, storedCard, (NSError*)nil); });
  EXPECT_EQ(received.count, 1) << "on the backend's thread";
  EXPECT_FALSE(received.onMainThread);
  [(NSMutableArray*)HLVSDKCreditCardBusinessAddressJSONKeyes replaceObjectAtIndex:0
                                                                       withObject:@"street"];
  [entryPoint updatePaymentInstrument:@"card-1" billingAddress:address forGuest:nil completion:nil];
  [(NSMutableArray*)HLVSDKCreditCardBusinessAddressJSONKeyes replaceObjectAtIndex:0
                                                                       withObject:@"k0"];
  EXPECT_TRUE([[host.address objectForKey:@"street"] isEqual:@"Street 1"]) << "the host's key now";
  host.cardUpdates.drop();
  [entryPoint updatePaymentInstrument:@"card-1" billingAddress:nil forGuest:nil completion:nil];
  EXPECT_EQ((const void*)host.cardUpdates.oldest(), nullptr);
  EXPECT_EQ([host.address count], 0u);
}

TEST_F(OperationsTest, NilCompletionsAreSkippedAndTheWorkIsDone) {
  giveToken();
  giveCard();
  [entryPoint addPaymentInstrument:card billingAddress:nil forGuest:guest completion:nil];
  host.adds.answer(makeError(@"refused"));
  [entryPoint deletePaymentInstrumentWithID:@"card-1" useCase:nil fromGuest:guest completion:nil];
  [manager() processAddedPaymentInstrument:nil paylevenToken:nil completion:nil];
  EXPECT_NE(host.takeTrace().find("assert parameter paymentInstrument"), std::string::npos);
}

TEST_F(OperationsTest, TheStepsOfAnAddCanBeTakenOneByOne) {
  __block NSString* token = nil;
  __block id found = nil;
  NSMutableArray* const keep = kept;
  const auto completion =
      copied(^(NSString* paylevenToken, PLVCreditCardPaymentInstrument* confirmed, NSError*) {
        token = paylevenToken;
        [keep addObject:token];
        found = confirmed;
      });
  [manager() addFirstPaymentInstrumentToPayleven:card forGuestEmail:@"a@b.c" completion:completion];
  host.tokens.answer(@"tok", (NSError*)nil);
  answerList();
  EXPECT_TRUE([token isEqual:@"tok"]);
  EXPECT_EQ(found, instrument);
  [manager() addNewPaymentInstrumentToPayleven:card
                             withPaylevenToken:@"tok2"
                                    completion:completion];
  host.adds.answer((NSError*)nil);
  host.lists.answer((NSArray*)nil, (NSError*)nil);
  EXPECT_TRUE([token isEqual:@"tok2"]);
  EXPECT_EQ(found, nil);
  EXPECT_NE(host.takeTrace().find("assert parameter paylevenInstruments: (null)"),
            std::string::npos);
}

TEST_F(OperationsTest, EveryStepIsAMessageAndTheFlagIsObserved) {
  TestManager* const own = [[[TestManager alloc] initWithAPIManager:[HLVSDKAPIManager manager]
                                                     paylevenClient:[PLVInAppClient sharedInstance]
                                                       reachability:nil] autorelease];
  [[HLVSDKPayleven sharedInstance] setPaymentInstrumentManager:own];
  [own setReachability:[HLVSDKReachability sharedReachability]];
  TestManager* const observer = [[TestManager new] autorelease];
  host.takeTrace();
  [own addObserver:observer forKeyPath:@"connectionAvaiable" options:0 context:nullptr];
  add();
  EXPECT_EQ(host.takeTrace(),
            "setConnectionAvaiable:\nconnectionAvaiable is 1\nisConnectionAvailable\n"
            "addFirstPaymentInstrument:billingAddress:forGuest:completion:\n"
            "addFirstPaymentInstrumentToPayleven:forGuestEmail:completion:\n"
            "provider token for guest@example.com, default");
  [own removeObserver:observer forKeyPath:@"connectionAvaiable"];
  onAnotherThread([&] { host.tokens.answer(@"tok", (NSError*)nil); });
  EXPECT_EQ(host.takeTrace(), "processAddedPaymentInstrument:paylevenToken:completion:\n"
                              "provider list under tok, default");
  giveToken();
  add();
  EXPECT_EQ(host.takeTrace(), "setConnectionAvaiable:\nisConnectionAvailable\n"
                              "addNewPaymentInstrument:billingAddress:forGuest:completion:\n"
                              "addNewPaymentInstrumentToPayleven:withPaylevenToken:completion:\n"
                              "provider add under tok, default");
  [[NSNotificationCenter defaultCenter] postNotificationName:@"reachability" object:nil];
  EXPECT_EQ([[own valueForKey:@"connectionAvaiable"] boolValue], NO);
}

TEST_F(OperationsTest, TextsCrossAsTheyAre) {
  // A mark of byte order, half a pair at the end of a part, a whole pair, a zero, half a pair.
  std::u16string units(127, u'e');
  units[0] = 0xFEFF;
  units += {0xD83D, u'x', 0xD83D, 0xDE00, 0, 0xE9, 0x20AC, 0xDE00, 0xD83D};
  NSString* const token = [objc::newStringOfUnits(units) autorelease];
  [fieldsOf(guest) setObject:token forKey:@"paylevenToken"];
  add();
  EXPECT_TRUE([host.lastToken isEqual:token]);
  host.adds.answer(makeError(token));
  EXPECT_EQ(received.count, 1);
}

TEST_F(OperationsTest, AnAddressIsCheckedFieldByField) {
  NSError* error = nil;
  EXPECT_TRUE([manager() validateBillingAddress:address error:&error]);
  [fieldsOf(address) setObject:@"" forKey:@"street"];
  EXPECT_FALSE([manager() validateBillingAddress:address error:&error]);
  EXPECT_TRUE([[error localizedDescription] isEqual:@"street '': (null)"]);
  [fieldsOf(address) setObject:@"Street 1" forKey:@"street"];
  NSError* const before = error;
  EXPECT_FALSE([manager() validateBillingAddress:address error:&error]);
  EXPECT_EQ(error, before);
}

TEST_F(OperationsTest, AManagersServicesAreTheAppsOwnAndMayBeReplaced) {
  EXPECT_EQ([manager() apiManager], [HLVSDKAPIManager manager]);
  EXPECT_EQ([manager() paymentClient], [PLVInAppClient sharedInstance]);
  EXPECT_EQ([manager() reachability], [HLVSDKReachability sharedReachability]);
  EXPECT_FALSE([manager() isConnectionAvailable]);
  [[NSNotificationCenter defaultCenter] postNotificationName:@"reachability"
                                                      object:nil
                                                    userInfo:@{
                                                      @"state" : @2
                                                    }];
  EXPECT_TRUE([manager() isConnectionAvailable]);
  [manager() setConnectionAvaiable:NO];
  EXPECT_FALSE([manager() isConnectionAvailable]);
  [manager() setApiManager:nil];
  [manager() setPaymentClient:nil];
  [manager() setReachability:nil];
  EXPECT_EQ([manager() apiManager], nil);
  add();
  EXPECT_TRUE([[received.error domain] isEqual:@"URL"]) << "no monitor, no connection";
}

}  // namespace
}  // namespace hlv::testing
