// What the binding keeps, and for how long. Leaks and uses after release are the sanitizer's to
// find; these tests make the situations.
#include "Tests/ObjC/ObjCTest.h"

using namespace objc_tests;
using hlv::host_classes::newObject;

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

namespace {

class MemoryTest : public ObjCTest {
 protected:
  MemoryTest() {
    // Its instance does not wait for the test's pool.
    @autoreleasepool {
      enable();
    }
  }
  void add(HLVSDKPaymentInstrument* entered, HLVSDKGuest* owner, GuestCardBlock completion) {
    [[HLVSDKPaymentManager sharedManager] addPaymentInstrument:entered
                                                billingAddress:nil
                                                      forGuest:owner
                                                    completion:completion];
  }
  static HLVSDKPaylevenPaymentInstrumentManager* newManager(HLVSDKReachability* monitor) {
    return [[HLVSDKPaylevenPaymentInstrumentManager alloc]
        initWithAPIManager:[HLVSDKAPIManager manager]
            paylevenClient:[PLVInAppClient sharedInstance]
              reachability:monitor];
  }

  // Their objects live outside the test's pool.
  const std::shared_ptr<hlv::testing::FakeGuest> other =
      std::make_shared<hlv::testing::FakeGuest>();
  const std::shared_ptr<hlv::testing::FakeEnteredCard> typed =
      std::make_shared<hlv::testing::FakeEnteredCard>();
};

TEST_F(MemoryTest, WhatPassedThroughIsFreedOnceItIsDropped) {
  @autoreleasepool {
    HLVSDKGuest* const owner = newObject(other);
    HLVSDKPaymentInstrument* const entered = newObject(typed);
    add(entered, owner, guestCardReceiver);
    [owner release];
    [entered release];
  }
  EXPECT_EQ(other.use_count(), 2) << "kept while the provider works";
  EXPECT_EQ(typed.use_count(), 2);
  @autoreleasepool {
    provider.tokens.answer("tok", nullptr);
    provider.lists.answer(Instruments{fake.instrument}, nullptr);
    backend.guestUpdates.answer(nullptr, nullptr);
    backend.cardAdds.answer(nullptr, nullptr, nullptr);
    runMainLoopUntil([&] { return received.count == 1; });
    backend.lastAddRequest.reset();
  }
  [received.kept removeAllObjects];
  EXPECT_EQ(other.use_count(), 1);
  EXPECT_EQ(typed.use_count(), 1);
}

TEST_F(MemoryTest, WhatIsReleasedReceivesNoNotificationAndAManagerLosesItsSuccesses) {
  @autoreleasepool {
    fake.guest->token = "tok";
    [HLVSDKPayleven sharedInstance];
    [HLVSDKPayleven resetSharedInstance];
    auto* const manager = newManager([HLVSDKReachability sharedReachability]);
    [manager addFirstPaymentInstrument:card
                        billingAddress:address
                              forGuest:guest
                            completion:guestCardReceiver];
    [manager release];
  }
  host->takeTrace();
  post(@"UIApplicationWillEnterForegroundNotification");
  post(HLVSDKReachabilityDidChangeReachabilityStateNotification);
  EXPECT_EQ(host->takeTrace(), "");
  provider.tokens.answer("tok", nullptr);
  EXPECT_EQ(host->takeTrace(), "") << "nobody is left to confirm the card";
  EXPECT_EQ(received.count, 0);
}

TEST_F(MemoryTest, AManagerMayGoInTheMiddleOfItsOwnCall) {
  TestLeavingMonitor* const monitor = [[TestLeavingMonitor new] autorelease];
  auto* const manager = newManager((HLVSDKReachability*)monitor);
  monitor->leaving = manager;
  [manager addPaymentInstrument:card
                 billingAddress:nil
                       forGuest:guest
                     completion:guestCardReceiver];
  EXPECT_EQ(provider.tokens.count(), 1u);
  provider.tokens.answer("tok", nullptr);
  EXPECT_EQ(received.count, 0);
}

}  // namespace
