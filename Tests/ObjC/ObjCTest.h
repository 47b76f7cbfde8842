// One test of the kit through its selectors: a fresh host, a pool, and records to speak of.
//
// Threading: the main thread.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "Tests/ObjC/TestHost.h"

namespace hlv::testing {

/// What a completion received.
struct Received {
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
  static HLVSDKConfiguration* configurationWithEntries(NSArray* entries);
  void enable();

  /// Completions that record what they get. The objects live as long as the test's pool.
  GuestBlock guestHeard();
  GuestCardBlock guestCardHeard();
  void (^successHeard())(BOOL, NSError*);

  /// A block on the heap, until the test ends.
  template <class Block>
  Block copied(Block block) {
    block = Block_copy(block);
    copies_.push_back([block] { Block_release(block); });
    return block;
  }

  /// Runs `work` on another thread, which has no pool, and waits for it.
  static void onAnotherThread(const std::function<void()>& work);
  /// Runs the main thread's loop until `done`.
  static void runMainLoopUntil(const std::function<bool()>& done);

  TestHost& host = TestHost::shared();
  NSAutoreleasePool* const pool = [NSAutoreleasePool new];
  Received received;
  /// Keeps what is received until the test ends.
  NSMutableArray* const kept = [NSMutableArray array];
  HLVSDKGuest* const guest = make<HLVSDKGuest>(@{@"email" : @"guest@example.com"});
  HLVSDKPaymentInstrument* const card = make<HLVSDKPaymentInstrument>(@{
    @"pan" : @"4111111111111111",
    @"expiryMonth" : @"12",
    @"expiryYear" : @"2030",
    @"cvv" : @"123",
    @"cardHolder" : @"A Guest",
    @"instrumentUseCaseString" : @"default"
  });
  HLVSDKPaymentBillingAddress* const address = make<HLVSDKPaymentBillingAddress>(
      @{@"street" : @"Street 1", @"city" : @"Berlin", @"countryCode" : @"DE", @"zip" : @"10115"});
  HLVSDKCreditCard* const storedCard = make<HLVSDKCreditCard>(@{
    @"halvoID" : @"card-1",
    @"lastFourDigits" : @"1111",
    @"brand" : @"visa",
    @"useCase" : @"default"
  });
  PLVCreditCardPaymentInstrument* const instrument = make<PLVCreditCardPaymentInstrument>(@{
    @"identifier" : @"plv-1",
    @"pan" : @"************1111",
    @"cardBrand" : @"visa",
    @"expiryMonth" : @"12",
    @"expiryYear" : @"2030"
  });

 private:
  std::vector<std::function<void()>> copies_;
};

}  // namespace hlv::testing
