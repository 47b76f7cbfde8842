// One test of the kit through its selectors: the host's classes over the scripted host, a pool, and
// records to speak of. Outside the kit's namespace, where the same names are the core's.
//
// Threading: calls and answers one at a time; the answers may come from any thread.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKPaylevenKit.h>
#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>

#include <Block.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "ObjC/HostClasses/Configuration.h"
#include "ObjC/HostClasses/Records.h"
#include "Tests/Support/ScriptedHost.h"

namespace objc_tests {

using GuestBlock = void (^)(HLVSDKGuest*, NSError*);
using GuestCardBlock = void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*);
using SuccessBlock = void (^)(BOOL, NSError*);

using Instruments = hlv::List<hlv::PLVCreditCardPaymentInstrument>;
using Cards = hlv::List<hlv::HLVSDKCreditCard>;
using hlv::host_classes::behind;

inline hlv::testing::ScriptedHost* runningHost;

/// Adds a line to the trace of the test that runs.
inline void note(std::string line) {
  if (runningHost) runningHost->trace.push_back(std::move(line));
}

inline NSError* makeError(NSString* description) {
  return [NSError errorWithDomain:@"service"
                             code:7
                         userInfo:@{
                           NSLocalizedDescriptionKey : description,
                           @"HLVDeveloperMessage" : @"for developers"
                         }];
}
/// Its description; empty for nil.
inline std::string descriptionOf(NSError* error) {
  return error ? [[error localizedDescription] UTF8String] : "";
}
/// An immutable record.
inline HLVSDKPaylevenKitConfiguration* recordWithKey(NSString* key) {
  return [HLVSDKPaylevenKitConfiguration
      configurationWithBlock:^(HLVSDKMutablePaylevenKitConfiguration* configuration) {
        configuration.paymentKey = key;
      }];
}
inline void post(NSString* name, NSDictionary* userInfo = nil) {
  [[NSNotificationCenter defaultCenter] postNotificationName:name object:nil userInfo:userInfo];
}

/// What a completion received, kept until the test ends: another thread's pool goes before.
struct Received {
  NSMutableArray* const kept = [NSMutableArray array];
  int count = 0;
  bool onMainThread = false;
  id guest = nil, card = nil;
  BOOL success = NO;
  NSError* error = nil;

  void take(id itsGuest, id itsCard, NSError* itsError) {
    ++count;
    onMainThread = [NSThread isMainThread];
    guest = itsGuest;
    card = itsCard;
    error = itsError;
    for (id object : {itsGuest, itsCard, static_cast<id>(itsError)}) {
      if (object) [kept addObject:object];
    }
  }
};

class ObjCTest : public ::testing::Test {
 protected:
  ObjCTest() {
    runningHost = host.get();
    hlv::host_classes::PlayedHost::install(played_);
    host->guest = fake.guest;
  }
  ~ObjCTest() override {
    runningHost = nullptr;
    [HLVSDKPayleven resetSharedInstance];
    host->dropEverything();
    host->guest.reset();
    backend.lastAddRequest.reset();
    fake.guest->cards.reset();
    Block_release(guestCardReceiver);
    Block_release(successReceiver);
    [pool drain];
    // A queue's thread lets go of what it held after its answer is posted, so possibly after the
    // test. A record that nobody lets go of ends as a time-out here.
    played_.reset();
    runMainLoopUntil([this] {
      return fake.guest.use_count() + fake.card.use_count() + fake.storedCard.use_count() +
                 fake.address.use_count() + fake.instrument.use_count() ==
             5;
    });
  }

  /// A configuration with one entry of the kit.
  static HLVSDKConfiguration* configurationWithKey(NSString* key) {
    return hlv::host_classes::configurationWithEntries(
        @[ hlv::host_classes::kitEntry([HLVSDKPayleven class], recordWithKey(key)) ]);
  }
  void enable() {
    [HLVSDKPayleven enableWithConfiguration:configurationWithKey(@"key")];
    host->takeTrace();
  }

  /// Runs `work` on another thread, which has no pool, and waits for it.
  static void onAnotherThread(const std::function<void()>& work) {
    std::thread([&] {
      GSRegisterCurrentThread();
      work();
      GSUnregisterCurrentThread();
    }).join();
  }
  /// Runs the main thread's loop until `done`.
  static void runMainLoopUntil(const std::function<bool()>& done) {
    while (!done()) {
      @autoreleasepool {
        [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:[NSDate distantPast]];
      }
    }
  }

  NSAutoreleasePool* const pool = [NSAutoreleasePool new];
  const std::shared_ptr<hlv::testing::ScriptedHost> host =
      std::make_shared<hlv::testing::ScriptedHost>();
  hlv::testing::ScriptedBackend& backend = *host->backend;
  hlv::testing::ScriptedProvider& provider = *host->provider;

  const hlv::testing::FakeObjects fake;

 private:
  std::shared_ptr<hlv::host_classes::PlayedHost> played_ =
      std::make_shared<hlv::host_classes::PlayedHost>(host);

 protected:
  /// The same records as an app has them. The guest is always this object.
  HLVSDKGuest* const guest = played_->objectOf(fake.guest);
  HLVSDKPaymentInstrument* const card = hlv::host_classes::asObject(fake.card);
  HLVSDKCreditCard* const storedCard = hlv::host_classes::asObject(fake.storedCard);
  HLVSDKPaymentBillingAddress* const address = hlv::host_classes::asObject(fake.address);
  PLVCreditCardPaymentInstrument* const instrument = hlv::host_classes::asObject(fake.instrument);
  Received received;
  /// Completions that record what they get.
  const GuestCardBlock guestCardReceiver =
      Block_copy(^(HLVSDKGuest* owner, HLVSDKCreditCard* added, NSError* error) {
        received.take(owner, added, error);
      });
  const SuccessBlock successReceiver = Block_copy(^(BOOL success, NSError* error) {
    received.take(nil, nil, error);
    received.success = success;
  });
};

}  // namespace objc_tests
