// One test of the kit through its selectors: the host's classes over the scripted host, a pool, and
// records to speak of. Outside the kit's namespace, where the same names are the core's.
//
// Threading: calls and answers one at a time; the answers may come from any thread.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKPaylevenKit.h>
#import <HLVSDKPaylevenKit/HalvoErrorsDeclarations.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ObjC/Binding/Blocks.h"
#include "ObjC/HostClasses/Records.h"
#include "Tests/Support/ScriptedHost.h"

namespace objc_tests {

using GuestBlock = void (^)(HLVSDKGuest*, NSError*);
using GuestCardBlock = void (^)(HLVSDKGuest*, HLVSDKCreditCard*, NSError*);
using SuccessBlock = void (^)(BOOL, NSError*);

using Instruments = hlv::List<hlv::PLVCreditCardPaymentInstrument>;
using Cards = hlv::List<hlv::HLVSDKCreditCard>;
using hlv::host_classes::behind;

/// Adds a line to the trace of the test that runs.
void note(std::string line);

NSError* makeError(NSString* description);
/// Its description; empty for nil.
std::string descriptionOf(NSError* error);
/// An immutable record.
HLVSDKPaylevenKitConfiguration* recordWithKey(NSString* key);
void post(NSString* name, NSDictionary* userInfo = nil);

/// What a completion received, kept until the test ends: another thread's pool goes before.
struct Received {
  NSMutableArray* const kept = [NSMutableArray array];
  int count = 0;
  bool onMainThread = false;
  id guest = nil, card = nil;
  BOOL success = NO;
  NSError* error = nil;
};

class ObjCTest : public ::testing::Test {
 protected:
  ObjCTest();
  ~ObjCTest() override;

  /// A configuration with one entry of the kit.
  static HLVSDKConfiguration* configurationWithKey(NSString* key);
  void enable();

  /// Completions that record what they get. The objects live as long as the test's pool.
  GuestBlock guestReceiver();
  GuestCardBlock guestCardReceiver();
  SuccessBlock successReceiver();

  /// A block on the heap, until the test ends.
  template <class Block>
  Block copied(Block block) {
    const auto copy = std::make_shared<hlv::objc::CopiedBlock<Block>>(block);
    copies_.push_back(copy);
    return copy->block();
  }

  /// Runs `work` on another thread, which has no pool, and waits for it.
  static void onAnotherThread(const std::function<void()>& work);
  /// Runs the main thread's loop until `done`.
  static void runMainLoopUntil(const std::function<bool()>& done);

  NSAutoreleasePool* const pool = [NSAutoreleasePool new];
  const std::shared_ptr<hlv::testing::ScriptedHost> host =
      std::make_shared<hlv::testing::ScriptedHost>();
  hlv::testing::ScriptedBackend& backend = *host->backend;
  hlv::testing::ScriptedProvider& provider = *host->provider;

  const std::shared_ptr<hlv::testing::FakeGuest> fakeGuest =
      std::make_shared<hlv::testing::FakeGuest>();
  const std::shared_ptr<hlv::testing::FakeEnteredCard> fakeCard =
      std::make_shared<hlv::testing::FakeEnteredCard>();
  const std::shared_ptr<hlv::testing::FakeStoredCard> fakeStoredCard =
      std::make_shared<hlv::testing::FakeStoredCard>();
  const std::shared_ptr<hlv::testing::FakeAddress> fakeAddress =
      std::make_shared<hlv::testing::FakeAddress>();
  const std::shared_ptr<hlv::testing::FakeInstrument> fakeInstrument =
      std::make_shared<hlv::testing::FakeInstrument>();

 private:
  std::shared_ptr<hlv::host_classes::PlayedHost> played_ =
      std::make_shared<hlv::host_classes::PlayedHost>(host);
  std::vector<std::shared_ptr<void>> copies_;

 protected:
  /// The same records as an app has them. The guest is always this object.
  HLVSDKGuest* const guest = played_->objectOf(fakeGuest);
  HLVSDKPaymentInstrument* const card = hlv::host_classes::asObject(fakeCard);
  HLVSDKCreditCard* const storedCard = hlv::host_classes::asObject(fakeStoredCard);
  HLVSDKPaymentBillingAddress* const address = hlv::host_classes::asObject(fakeAddress);
  PLVCreditCardPaymentInstrument* const instrument = hlv::host_classes::asObject(fakeInstrument);
  Received received;
};

}  // namespace objc_tests
