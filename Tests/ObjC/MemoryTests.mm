// What the binding keeps, and for how long. Leaks and uses after release are the sanitizer's to
// find; these tests make the situations.
#include "Tests/ObjC/ObjCTest.h"

/// A monitor that releases an object while it is asked.
@interface TestLeavingMonitor : NSObject {
 @public
  id leaving;
}
@end
@implementation TestLeavingMonitor
- (NSInteger)currentState {
  [leaving release];
  return 1;
}
@end

namespace hlv::testing {
namespace {

using MemoryTest = ObjCTest;

/// A guest that lives outside the pool.
HLVSDKGuest* newGuest() {
  HLVSDKGuest* const guest = [HLVSDKGuest new];
  [fieldsOf(guest) setObject:@"other@example.com" forKey:@"email"];
  return guest;
}

TEST_F(MemoryTest, WhatPassedThroughIsFreedOnceItIsDropped) {
  enable();
  const std::size_t before = liveRecords();
  @autoreleasepool {
    HLVSDKGuest* const other = newGuest();
    HLVSDKPaymentInstrument* const typed = [HLVSDKPaymentInstrument new];
    [fieldsOf(typed) addEntriesFromDictionary:fieldsOf(card)];
    [[[HLVSDKPaymentManager new] autorelease] addPaymentInstrument:typed
                                                    billingAddress:nil
                                                          forGuest:other
                                                        completion:guestCardHeard()];
    [other release];
    [typed release];
  }
  EXPECT_EQ(liveRecords(), before + 2) << "kept while the provider works";
  @autoreleasepool {
    host.tokens.answer(@"tok", (NSError*)nil);
    host.lists.answer((NSArray*)@[ instrument ], (NSError*)nil);
    host.guestUpdates.answer((HLVSDKGuest*)nil, (NSError*)nil);
    host.cardAdds.answer((HLVSDKGuest*)nil, storedCard, (NSError*)nil);
    runMainLoopUntil([&] { return received.count == 1; });
    [host.request release], host.request = nil;
  }
  EXPECT_EQ(liveRecords(), before);
}

TEST_F(MemoryTest, ABlockAndWhatItCapturesAreFreedWithTheCallThatIsNeverAnswered) {
  enable();
  const std::size_t before = liveRecords();
  @autoreleasepool {
    HLVSDKGuest* const captured = newGuest();
    [[[HLVSDKPaymentManager new] autorelease]
        addPaymentInstrument:card
              billingAddress:nil
                    forGuest:guest
                  completion:^(HLVSDKGuest*, HLVSDKCreditCard*, NSError*) {
                    [captured email];
                  }];
    [captured release];
  }
  EXPECT_EQ(liveRecords(), before + 1) << "captured by the completion";
  host.tokens.drop();
  EXPECT_EQ(liveRecords(), before);
}

TEST_F(MemoryTest, ARequestThatTheHostKeepsStillKnowsItsToken) {
  enable();
  const std::size_t before = liveRecords();
  @autoreleasepool {
    [fieldsOf(guest) setObject:@"tok" forKey:@"paylevenToken"];
    [[HLVSDKPaymentManager sharedManager] addPaymentInstrument:card
                                                billingAddress:address
                                                      forGuest:guest
                                                    completion:nil];
    host.adds.answer((NSError*)nil);
    host.lists.answer((NSArray*)@[ instrument ], (NSError*)nil);
    host.cardAdds.drop();
  }
  @autoreleasepool {
    EXPECT_TRUE([[[[host.request JSONRepresentation] objectForKey:@"credit_card"]
        objectForKey:@"plv_token"] isEqual:@"tok"]);
    NSError* error = nil;
    EXPECT_TRUE([host.request isValid:&error]);
  }
  [host.request release], host.request = nil;
  EXPECT_EQ(liveRecords(), before) << "the instrument that was made of the card is gone too";
}

TEST_F(MemoryTest, AManagerThatIsReleasedHearsNoNotificationAndLosesItsSuccesses) {
  @autoreleasepool {
    auto* const manager = [[HLVSDKPaylevenPaymentInstrumentManager alloc]
        initWithAPIManager:[HLVSDKAPIManager manager]
            paylevenClient:[PLVInAppClient sharedInstance]
              reachability:[HLVSDKReachability sharedReachability]];
    [manager addFirstPaymentInstrument:card
                        billingAddress:address
                              forGuest:guest
                            completion:guestCardHeard()];
    [manager release];
  }
  [[NSNotificationCenter defaultCenter] postNotificationName:@"reachability"
                                                      object:nil
                                                    userInfo:@{
                                                      @"state" : @2
                                                    }];
  host.takeTrace();
  host.tokens.answer(@"tok", (NSError*)nil);
  EXPECT_EQ(host.takeTrace(), "") << "nobody is left to confirm the card";
  EXPECT_EQ(received.count, 0);
}

TEST_F(MemoryTest, AManagerMayGoInTheMiddleOfItsOwnCall) {
  TestLeavingMonitor* const monitor = [[TestLeavingMonitor new] autorelease];
  auto* const manager = [[HLVSDKPaylevenPaymentInstrumentManager alloc]
      initWithAPIManager:[HLVSDKAPIManager manager]
          paylevenClient:[PLVInAppClient sharedInstance]
            reachability:(HLVSDKReachability*)monitor];
  monitor->leaving = manager;
  [manager addPaymentInstrument:card billingAddress:nil forGuest:guest completion:guestCardHeard()];
  EXPECT_EQ(host.takeTrace(), "provider token for guest@example.com, default");
  host.tokens.answer(@"tok", (NSError*)nil);
  EXPECT_EQ(received.count, 0);
}

TEST_F(MemoryTest, AnInstanceThatIsReleasedHearsNoNotification) {
  @autoreleasepool {
    enable();
    [fieldsOf(guest) setObject:@"tok" forKey:@"paylevenToken"];
    [HLVSDKPayleven sharedInstance];
    [HLVSDKPayleven resetSharedInstance];
  }
  [[NSNotificationCenter defaultCenter]
      postNotificationName:@"UIApplicationWillEnterForegroundNotification"
                    object:nil];
  EXPECT_EQ(host.takeTrace(), "");
}

TEST_F(MemoryTest, ASynchroniserMayGoWhileItsQueueWorks) {
  [fieldsOf(guest) setObject:@"tok" forKey:@"paylevenToken"];
  @autoreleasepool {
    auto* const synchronizer = [[HLVSDKPaylevenPaymentInstrumentsSynchronizer alloc]
        initWithAPIManager:[HLVSDKAPIManager manager]
            paylevenClient:[PLVInAppClient sharedInstance]];
    [synchronizer synchronizePaymentInstrumentsForGuest:guest completion:successHeard()];
    [synchronizer release];
  }
  host.cardFetches.answer((NSArray*)@[], (NSError*)nil);
  for (int list = 0; list < 3; ++list) host.lists.answer((NSArray*)@[ instrument ], (NSError*)nil);
  runMainLoopUntil([&] { return received.count == 1; });
  EXPECT_TRUE(received.success);
}

}  // namespace
}  // namespace hlv::testing
