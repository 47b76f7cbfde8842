#include "Tests/ObjC/ObjCTest.h"

#include <thread>
#include <utility>

#include "ObjC/HostClasses/Configuration.h"

namespace objc_tests {
namespace {

hlv::testing::ScriptedHost* runningHost;

void take(Received& received, id guest, id card, NSError* error) {
  ++received.count;
  received.onMainThread = [NSThread isMainThread];
  received.guest = guest;
  received.card = card;
  received.error = error;
  for (id object : {guest, card, static_cast<id>(error)}) {
    if (object) [received.kept addObject:object];
  }
}

}  // namespace

void note(std::string line) {
  if (runningHost) runningHost->trace.push_back(std::move(line));
}

NSError* makeError(NSString* description) {
  return [NSError errorWithDomain:@"service"
                             code:7
                         userInfo:@{
                           NSLocalizedDescriptionKey : description,
                           @"HLVDeveloperMessage" : @"for developers"
                         }];
}

std::string descriptionOf(NSError* error) {
  return error ? [[error localizedDescription] UTF8String] : "";
}

HLVSDKPaylevenKitConfiguration* recordWithKey(NSString* key) {
  return [HLVSDKPaylevenKitConfiguration
      configurationWithBlock:^(HLVSDKMutablePaylevenKitConfiguration* configuration) {
        configuration.paymentKey = key;
      }];
}

void post(NSString* name, NSDictionary* userInfo) {
  [[NSNotificationCenter defaultCenter] postNotificationName:name object:nil userInfo:userInfo];
}

ObjCTest::ObjCTest() {
  runningHost = host.get();
  hlv::host_classes::PlayedHost::install(played_);
  host->guest = fakeGuest;
}

ObjCTest::~ObjCTest() {
  runningHost = nullptr;
  [HLVSDKPayleven resetSharedInstance];
  host->dropEverything();
  host->guest.reset();
  backend.lastAddRequest.reset();
  fakeGuest->cards.reset();
  copies_.clear();
  [pool drain];
  // A queue's thread lets go of what it held after its answer is posted, so possibly after the
  // test. A record that nobody lets go of ends as a time-out here.
  played_.reset();
  runMainLoopUntil([this] {
    return fakeGuest.use_count() + fakeCard.use_count() + fakeStoredCard.use_count() +
               fakeAddress.use_count() + fakeInstrument.use_count() ==
           5;
  });
}

HLVSDKConfiguration* ObjCTest::configurationWithKey(NSString* key) {
  return hlv::host_classes::configurationWithEntries(
      @[ hlv::host_classes::kitEntry([HLVSDKPayleven class], recordWithKey(key)) ]);
}

void ObjCTest::enable() {
  [HLVSDKPayleven enableWithConfiguration:configurationWithKey(@"key")];
  host->takeTrace();
}

GuestBlock ObjCTest::guestReceiver() {
  Received* const into = &received;
  return copied(^(HLVSDKGuest* owner, NSError* error) {
    take(*into, owner, nil, error);
  });
}

GuestCardBlock ObjCTest::guestCardReceiver() {
  Received* const into = &received;
  return copied(^(HLVSDKGuest* owner, HLVSDKCreditCard* added, NSError* error) {
    take(*into, owner, added, error);
  });
}

SuccessBlock ObjCTest::successReceiver() {
  Received* const into = &received;
  return copied(^(BOOL success, NSError* error) {
    take(*into, nil, nil, error);
    into->success = success;
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

}  // namespace objc_tests
