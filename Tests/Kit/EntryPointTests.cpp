// The entry point through which the host reaches the manager.
#include "Public/HLVSDKPayleven.h"
#include "Public/HLVSDKPaymentManager.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

class EntryPointTest : public KitTest {
 protected:
  ~EntryPointTest() override { HLVSDKPayleven::resetSharedInstance(); }

  std::shared_ptr<HLVSDKPayleven> makeKit() {
    return HLVSDKPayleven::initWithConfiguration(
        nullptr, HLVSDKPaylevenKitConfiguration::configurationWithBlock(nullptr));
  }
  void callEverything() {
    entryPoint->addPaymentInstrument(card, address, guest, guestCard());
    entryPoint->deletePaymentInstrumentWithID("card-1", "default", guest, guestOnly());
    entryPoint->updatePaymentInstrument("card-1", address, guest, guestCard());
  }

  const std::shared_ptr<HLVSDKPaymentManager> entryPoint = HLVSDKPaymentManager::make();
};

TEST_F(EntryPointTest, BeforeEnablingNothingHappensAndNobodyIsTold) {
  EXPECT_EQ(HLVSDKPaymentManager::sharedManager(), nullptr);
  callEverything();
  platform->runEverything();
  EXPECT_EQ(outcome.count, 0);
  EXPECT_EQ(host->takeTrace(), "");
}

TEST_F(EntryPointTest, EveryCallReachesTheManagerOfTheInstanceOfTheMoment) {
  guest->token = "tok";
  for (int round = 0; round < 2; ++round) {
    const auto kit = makeKit();
    HLVSDKPayleven::setSharedInstance(kit);
    EXPECT_EQ(HLVSDKPaymentManager::sharedManager(), kit->paymentInstrumentManager());
    host->takeTrace();
    callEverything();
    EXPECT_EQ(host->takeTrace(),
              "provider add new[..1111 09/2031 cvv A. Guest] under tok use case default\n"
              "backend delete card-1 of guest@example.com\n"
              "backend update card-1 of guest@example.com");
  }
}

}  // namespace
}  // namespace hlv::testing
