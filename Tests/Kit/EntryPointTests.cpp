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

TEST_F(EntryPointTest, EveryCallReachesTheManagerOfTheInstanceOfTheMoment) {
  EXPECT_EQ(HLVSDKPaymentManager::sharedManager(), nullptr);
  callEverything();
  EXPECT_EQ(host->takeTrace(), "") << "before enabling nothing happens";
  guest->token = "tok";
  const std::shared_ptr<HLVSDKPayleven> kits[] = {makeKit(), makeKit()};
  for (const auto& kit : kits) {
    HLVSDKPayleven::setSharedInstance(kit);
    const auto manager = std::dynamic_pointer_cast<HLVSDKPaylevenPaymentInstrumentManager>(
        kit->paymentInstrumentManager());
    const auto ownBackend = std::make_shared<ScriptedBackend>(&host->trace);
    const auto ownProvider = std::make_shared<ScriptedProvider>(&host->trace);
    manager->setApiManager(ownBackend);
    manager->setPaymentClient(ownProvider);
    EXPECT_EQ(HLVSDKPaymentManager::sharedManager(), manager);
    callEverything();
    EXPECT_EQ(ownProvider->adds.count(), 1u);
    EXPECT_EQ(ownBackend->deletions.count(), 1u);
    EXPECT_EQ(ownBackend->cardUpdates.count(), 1u);
  }
}

}  // namespace
}  // namespace hlv::testing
