// Every operation through its selectors: what is called, what comes back, and on which thread.
#include <objc/runtime.h>

#include <utility>

#include "ObjC/Binding/Strings.h"
#include "Tests/ObjC/ObjCTest.h"
#include "Tests/Support/FakeErrors.h"

using namespace objc_tests;
using hlv::objc::fromNSError;
using hlv::testing::makeError;

/// An app's own manager, which writes down the steps that it is sent and then takes them.
@interface TestManager : HLVSDKPaylevenPaymentInstrumentManager
@end
@implementation TestManager
/// Every step takes up to four pointers, or a boolean, and returns nothing or a boolean.
static void* takeStep(id self, SEL step, void* first, void* second, void* third, void* fourth) {
  note([NSStringFromSelector(step) UTF8String]);
  const IMP own = [HLVSDKPaylevenPaymentInstrumentManager instanceMethodForSelector:step];
  return reinterpret_cast<decltype(&takeStep)>(own)(self, step, first, second, third, fourth);
}
+ (void)initialize {
  for (const SEL step : {
         @selector(isConnectionAvailable), @selector(setConnectionAvaiable:),
             @selector(addFirstPaymentInstrument:billingAddress:forGuest:completion:),
             @selector(addNewPaymentInstrument:billingAddress:forGuest:completion:),
             @selector(addFirstPaymentInstrumentToPayleven:forGuestEmail:completion:),
             @selector(addNewPaymentInstrumentToPayleven:withPaylevenToken:completion:),
             @selector(processAddedPaymentInstrument:paylevenToken:completion:)
       }) {
    const Method own = class_getInstanceMethod([self superclass], step);
    class_addMethod([TestManager class], step, reinterpret_cast<IMP>(&takeStep),
                    method_getTypeEncoding(own));
  }
}
- (void)observeValueForKeyPath:(NSString*)path
                      ofObject:(id)object
                        change:(NSDictionary*)change
                       context:(void*)context {
  note([[NSString stringWithFormat:@"%@ is %@", path, [object valueForKey:path]] UTF8String]);
}
@end

/// An app's own client of the backend, which keeps blocks; that of an update as it came.
@interface TestBackend : HLVSDKAPIManager {
 @public
  GuestCardBlock updated;
  GuestBlock deleted;
}
@end
@implementation TestBackend
- (void)deleteCreditCardWithID:(NSString*)ID
                     fromGuest:(HLVSDKGuest*)guest
                    completion:(GuestBlock)completion {
  deleted = Block_copy(completion);
}
- (void)updateCreditCard:(NSString*)ID
          billingAddress:(NSDictionary*)billingAddress
                forGuest:(HLVSDKGuest*)guest
              completion:(GuestCardBlock)completion {
  updated = completion;
}
@end

/// An app's own entry point: its class is not asked for the manager.
@interface TestEntryPoint : HLVSDKPaymentManager
@end
@implementation TestEntryPoint
+ (id<HLVSDKPaymentInstrumentManager>)sharedManager {
  return nil;
}
@end

/// The host's keys, which a header declares as a constant, as a host changes them.
extern "C" NSArray* addressKeys __asm__("HLVSDKCreditCardBusinessAddressJSONKeyes");

namespace {

constexpr const char* tokenCall = "provider create token for guest@example.com with new[..1111 "
                                  "09/2031 cvv of 3 A. Guest] use case "
                                  "default";
constexpr const char* addCall =
    "provider add new[..1111 09/2031 cvv of 3 A. Guest] under tok use case default";

class OperationsTest : public ObjCTest {
 protected:
  OperationsTest() { enable(); }
  static HLVSDKPaylevenPaymentInstrumentManager* manager() {
    return (HLVSDKPaylevenPaymentInstrumentManager*)[HLVSDKPaymentManager sharedManager];
  }
  void add() {
    [entryPoint addPaymentInstrument:card
                      billingAddress:address
                            forGuest:guest
                          completion:guestCardReceiver];
  }
  void update(NSString* ID, HLVSDKPaymentBillingAddress* with, GuestCardBlock completion) {
    [entryPoint updatePaymentInstrument:ID
                         billingAddress:with
                               forGuest:guest
                             completion:completion];
  }
  HLVSDKPaymentManager* const entryPoint = [[TestEntryPoint new] autorelease];
};

TEST_F(OperationsTest, AFirstCardCrossesBothServicesAndComesBackAsTheSameObjects) {
  add();
  EXPECT_EQ(host->takeTrace(), tokenCall);
  onAnotherThread([&] { provider.tokens.answer("tok", nullptr); });
  EXPECT_EQ(host->takeTrace(), "provider list tok use case default");
  onAnotherThread([&] { provider.lists.answer(Instruments{fake.instrument}, nullptr); });
  runMainLoopUntil([&] { return backend.cardAdds.count() == 1; });
  EXPECT_EQ(fake.card->identifier, "plv-1");
  EXPECT_EQ(host->takeTrace(), "backend update guest token=tok\n"
                               "backend add card for guest@example.com token=no request");
  EXPECT_EQ(host->requestedCard, fake.card.get());
  EXPECT_EQ(host->requestedAddress, fake.address.get());
  EXPECT_EQ(host->requestProvider, 0);
  onAnotherThread([&] {
    backend.guestUpdates.answer(nullptr, nullptr);
    backend.cardAdds.answer(nullptr, fake.storedCard, nullptr);
  });
  runMainLoopUntil([&] { return received.count == 1; });
  EXPECT_TRUE(received.onMainThread);
  EXPECT_EQ(received.guest, guest);
  EXPECT_EQ(behind<hlv::HLVSDKCreditCard>(received.card), fake.storedCard);
  EXPECT_EQ(received.error, nil);
}

TEST_F(OperationsTest, AnAddIsRefusedByTheCardItselfAndThenByTheNetwork) {
  host->network->state = 256;
  add();
  EXPECT_EQ(descriptionOf(received.error), "localized code 1 in 'HLVURLErrorDomain', message nil");
  NSError* const invalid = makeError(@"invalid card");
  fake.card->valid = false;
  fake.card->ownError = fromNSError(invalid);
  onAnotherThread([&] {
    @autoreleasepool {
      add();
    }
  });
  EXPECT_EQ(received.count, 1);
  runMainLoopUntil([&] { return received.count == 2; });
  EXPECT_TRUE(received.onMainThread);
  EXPECT_EQ(received.error, invalid);
  EXPECT_EQ(host->takeTrace(), "makes code 1 in 'HLVURLErrorDomain', message nil");
}

TEST_F(OperationsTest, AFurtherCardLogsItsFailuresToBothLoggers) {
  fake.guest->token = "tok";
  add();
  EXPECT_EQ(host->takeTrace(), addCall);
  provider.adds.answer(makeError("refused"));
  EXPECT_EQ(descriptionOf(received.error), "localized provider(localized refused)");
  const std::string block =
      "-[HLVSDKPaylevenPaymentInstrumentManager "
      "addNewPaymentInstrument:billingAddress:forGuest:completion:]_block_invoke";
  const std::string line = std::string(" 1 \"%@\" <Failed to add new payment instrument. ") +
                           [[received.error description] UTF8String] + "> at " + block;
  EXPECT_TRUE(host->takeTrace().ends_with("remote" + line + "\nconsole" + line));
  add();
  provider.adds.answer(nullptr);
  fake.instrument->id.reset();
  provider.lists.answer(Instruments{fake.instrument}, nullptr);
  const std::string error = descriptionOf(received.error);
  EXPECT_TRUE(error.starts_with("localized required 'identifier', message ")) << error;
  EXPECT_NE(error.find(", by " + block + " in "), std::string::npos) << error;
}

TEST_F(OperationsTest, AReplyLeavesNothingInThePoolOfItsThread) {
  fake.guest->token = "tok";
  fake.guest->cards = Cards{fake.storedCard};
  TestBackend* const own = [[TestBackend new] autorelease];
  [manager() setApiManager:own];
  [entryPoint deletePaymentInstrumentWithID:@"card-1"
                                    useCase:@"default"
                                  fromGuest:guest
                                 completion:^(HLVSDKGuest* owner, NSError* error) {
                                   received.take(owner, nil, error);
                                 }];
  NSError* const refusal = makeError(@"refused");
  NSAutoreleasePool* const services = [NSAutoreleasePool new];
  own->deleted(nil, refusal);
  EXPECT_EQ([services autoreleaseCount], 0u);
  [services drain];
  EXPECT_EQ(received.error, refusal);
  Block_release(own->deleted);
}

TEST_F(OperationsTest, AnUpdateHandsOverTheVeryBlockThatItWasGiven) {
  update(@"card-1", address, guestCardReceiver);
  EXPECT_EQ(host->takeTrace(), "backend update card-1 of guest@example.com");
  EXPECT_EQ(backend.lastAddress, (hlv::Dictionary{{"street", "Street 1"},
                                                  {"city", "Berlin"},
                                                  {"country_code", "DE"},
                                                  {"zip", "10115"},
                                                  {"business_name", "Halvo GmbH"}}));
  onAnotherThread([&] { backend.cardUpdates.answer(fake.guest, fake.storedCard, nullptr); });
  EXPECT_EQ(received.count, 1) << "on the backend's thread";
  EXPECT_FALSE(received.onMainThread);

  NSArray* const before = std::exchange(addressKeys, @[ @"road" ]);
  update(@"card-1", address, nil);
  addressKeys = before;
  EXPECT_EQ(backend.lastAddress, (hlv::Dictionary{{"road", "Street 1"}})) << "the host's key now";

  TestBackend* const own = [[TestBackend new] autorelease];
  [manager() setApiManager:own];
  update(@"card-1", address, guestCardReceiver);
  EXPECT_EQ((const void*)own->updated, (const void*)guestCardReceiver);
}

TEST_F(OperationsTest, EveryStepIsAMessageAndTheFlagIsObserved) {
  TestManager* const own = [[[TestManager alloc] initWithAPIManager:[HLVSDKAPIManager manager]
                                                     paylevenClient:[PLVInAppClient sharedInstance]
                                                       reachability:nil] autorelease];
  [[HLVSDKPayleven sharedInstance] setPaymentInstrumentManager:own];
  [own setReachability:[HLVSDKReachability sharedReachability]];
  TestManager* const observer = [[TestManager new] autorelease];
  host->takeTrace();
  [own addObserver:observer forKeyPath:@"connectionAvaiable" options:0 context:nullptr];
  add();
  EXPECT_EQ(host->takeTrace(),
            "setConnectionAvaiable:\nconnectionAvaiable is 1\nisConnectionAvailable\n"
            "addFirstPaymentInstrument:billingAddress:forGuest:completion:\n"
            "addFirstPaymentInstrumentToPayleven:forGuestEmail:completion:\n" +
                std::string(tokenCall));
  [own removeObserver:observer forKeyPath:@"connectionAvaiable"];
  onAnotherThread([&] { provider.tokens.answer("tok", nullptr); });
  EXPECT_EQ(host->takeTrace(), "processAddedPaymentInstrument:paylevenToken:completion:\n"
                               "provider list tok use case default");
  fake.guest->token = "tok";
  add();
  EXPECT_EQ(host->takeTrace(), "setConnectionAvaiable:\nisConnectionAvailable\n"
                               "addNewPaymentInstrument:billingAddress:forGuest:completion:\n"
                               "addNewPaymentInstrumentToPayleven:withPaylevenToken:completion:\n" +
                                   std::string(addCall));
  post(HLVSDKReachabilityDidChangeReachabilityStateNotification);
  EXPECT_EQ([[own valueForKey:@"connectionAvaiable"] boolValue], NO);
}

TEST_F(OperationsTest, TextsCrossAsTheyAre) {
  // A mark of byte order, half a pair at the end of a part, a whole pair, a zero, half a pair.
  std::u16string units(127, u'e');
  units[0] = 0xFEFF;
  units += {0xD83D, u'x', 0xD83D, 0xDE00, 0, 0xE9, 0x20AC, 0xDE00, 0xD83D};
  NSMutableString* const string = [NSMutableString string];
  for (const unichar unit : units) [string appendFormat:@"%C", unit];
  const std::string bytes = "\xEF\xBB\xBF" + std::string(126, 'e') +
                            "\xED\xA0\xBDx\xF0\x9F\x98\x80" + std::string(1, '\0') +
                            "\xC3\xA9\xE2\x82\xAC\xED\xB8\x80\xED\xA0\xBD";
  EXPECT_EQ(hlv::objc::fromNSString(string), bytes);
  EXPECT_TRUE([hlv::objc::toNSString(bytes) isEqual:string]);
  fake.guest->token = bytes;
  add();
  provider.adds.answer(fromNSError(makeError(string)));
  EXPECT_EQ(received.count, 1);
}

TEST_F(OperationsTest, AnAddressIsCheckedFieldByField) {
  NSError* error = nil;
  EXPECT_TRUE([manager() validateBillingAddress:address error:&error]);
  fake.address->streetName = "";
  EXPECT_FALSE([manager() validateBillingAddress:address error:&error]);
  EXPECT_EQ(descriptionOf(error), "localized invalid 'street' value '', message nil");
  fake.address->streetName = "Street 1";
  EXPECT_FALSE([manager() validateBillingAddress:address error:&error]) << "an error was there";
}

}  // namespace
