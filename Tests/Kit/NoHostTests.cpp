// The kit with no host installed.
#include <cstdlib>

#include "Host/HLVSDKCoreKit/HLVSDKAsserts.h"
#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/Halvo_Errors/HLVErrorFacade.h"
#include "Public/HLVSDKPayleven.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

TEST_F(KitTest, WithoutAHostEverythingAnswersNullAndItIsSaidOnce) {
  Host::install(nullptr);
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(HLVSDKAPIManager::manager(), nullptr);
  EXPECT_EQ(PLVInAppClient::sharedInstance(), nullptr);
  EXPECT_EQ(HLVErrorFacade::make(), nullptr);
  EXPECT_EQ(kHLVSDKCreditCardUseCaseDefault(), std::nullopt);
  EXPECT_EQ(HLVSDKCreditCardBusinessAddressJSONKeyes(0), std::nullopt);
  HLVSDKAsserts::handleAssertWithMessage("read by nobody");
  const auto said = ::testing::internal::GetCapturedStderr();
  EXPECT_NE(said.find("no host is installed"), std::string::npos);
  EXPECT_EQ(said.find('\n'), said.size() - 1) << "one line";

  const auto kit = HLVSDKPayleven::initWithConfiguration(nullptr, nullptr);
  platform->notificationCenter()->post({UIApplicationWillEnterForegroundNotification, {}});
  guest->token = "tok";
  const auto manager = std::dynamic_pointer_cast<HLVSDKPaylevenPaymentInstrumentManager>(
      kit->paymentInstrumentManager());
  manager->addPaymentInstrument(card, address, guest, guestCard());
  manager->deletePaymentInstrumentWithID("card-1", "default", guest, [this](auto, auto error) {
    guestCard()(nullptr, nullptr, error);
  });
  manager->addFirstPaymentInstrument(nullptr, nullptr, nullptr, guestCard());
  manager->addNewPaymentInstrument(nullptr, nullptr, nullptr, guestCard());
  manager->updatePaymentInstrument("card-1", address, guest, guestCard());
  manager->processAddedPaymentInstrument(card, "tok", [this](auto...) { ++outcome.count; });
  kit->paymentInstrumentsSynchronizer()->synchronizePaymentInstrumentsForGuest(guest, nullptr);
  platform->runEverything();
  EXPECT_EQ(outcome.count, 2) << "both are refused offline";
  EXPECT_EQ(outcome.error, nullptr) << "and there is no facade to make an error";
}

/// What was registered first runs last, when everything that came later is gone.
void exitWithSomethingToPost() {
  std::atexit([] {
    const auto platform = Platform::current();
    platform->mainQueue()->async([] {});
    platform->makeSerialQueue("late")->async([] { std::abort(); });
    if (Host::current()) std::abort();
  });
  Host::install(std::make_shared<ScriptedHost>());
  Platform::current()->makeSerialQueue("early")->async([] {});
  std::exit(0);
}

TEST(ProcessExitDeathTest, PlatformAndHostMayBeAskedToTheVeryEnd) {
  EXPECT_EXIT(exitWithSomethingToPost(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace hlv::testing
