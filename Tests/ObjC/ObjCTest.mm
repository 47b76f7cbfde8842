#include "Tests/ObjC/ObjCTest.h"

#include <thread>

namespace hlv::testing {

ObjCTest::ObjCTest() {
  host.reset();
  host.currentGuest = [guest retain];
  host.requestBody = [@{@"credit_card" : @{@"brand" : @"visa"}, @"kind" : @1.5} retain];
}

ObjCTest::~ObjCTest() {
  [HLVSDKPayleven resetSharedInstance];
  host.reset();
  for (const auto& release : copies_) release();
  [pool drain];
  // A queue's thread lets go of what it held after its answer is posted, so possibly after the
  // test. A record that nobody lets go of ends as a time-out here.
  runMainLoopUntil([] { return liveRecords() == 0; });
}

HLVSDKConfiguration* ObjCTest::configurationWithEntries(NSArray* entries) {
  return make<HLVSDKConfiguration>(@{@"kits" : entries});
}

HLVSDKConfiguration* ObjCTest::configurationWithKey(NSString* key) {
  id record = [HLVSDKPaylevenKitConfiguration
      configurationWithBlock:^(HLVSDKMutablePaylevenKitConfiguration* configuration) {
        configuration.paymentKey = key;
      }];
  return configurationWithEntries(@[ [TestKitEntry entryWithKit:[HLVSDKPayleven class]
                                                  configuration:record] ]);
}

void ObjCTest::enable() {
  [HLVSDKPayleven enableWithConfiguration:configurationWithKey(@"key")];
  host.takeTrace();
}

GuestBlock ObjCTest::guestHeard() {
  Received* const into = &received;
  NSMutableArray* const keep = kept;
  return copied(^(HLVSDKGuest* owner, NSError* error) {
    ++into->count;
    into->onMainThread = [NSThread isMainThread];
    into->guest = owner;
    into->error = error;
    if (error) [keep addObject:error];
  });
}

GuestCardBlock ObjCTest::guestCardHeard() {
  Received* const into = &received;
  NSMutableArray* const keep = kept;
  return copied(^(HLVSDKGuest* owner, HLVSDKCreditCard* added, NSError* error) {
    ++into->count;
    into->onMainThread = [NSThread isMainThread];
    into->guest = owner;
    into->card = added;
    into->error = error;
    if (error) [keep addObject:error];
  });
}

void (^ObjCTest::successHeard())(BOOL, NSError*) {
  Received* const into = &received;
  NSMutableArray* const keep = kept;
  return copied(^(BOOL success, NSError* error) {
    ++into->count;
    into->onMainThread = [NSThread isMainThread];
    into->success = success;
    into->error = error;
    if (error) [keep addObject:error];
  });
}

void ObjCTest::onAnotherThread(const std::function<void()>& work) {
  std::thread([&] {
    GSRegisterCurrentThread();
    work();
    GSUnregisterCurrentThread();
  }).join();
}

void ObjCTest::runMainLoopUntil(const std::function<bool()>& done) {
  while (!done()) {
    @autoreleasepool {
      [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:[NSDate distantPast]];
    }
  }
}

}  // namespace hlv::testing
