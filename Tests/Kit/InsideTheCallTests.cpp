// Hosts that answer inside the call, and that release the kit from inside their own code.
#include "Public/HLVSDKPayleven.h"
#include "Public/HLVSDKPaymentManager.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

class InsideTheCallTest : public KitTest {
 protected:
  InsideTheCallTest() {
    host->guest = guest;
    HLVSDKPayleven::setSharedInstance(HLVSDKPayleven::initWithConfiguration(
        nullptr, HLVSDKPaylevenKitConfiguration::configurationWithBlock(nullptr)));
    provider.tokens.answerInside = [](const auto& answer) { answer("tok", nullptr); };
    provider.adds.answerInside = [](const auto& answer) { answer(nullptr); };
    provider.removals.answerInside = [](const auto& answer) { answer(nullptr); };
    provider.lists.answerInside = [this](const auto& answer) {
      answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
    };
    backend.guestUpdates.answerInside = [this](const auto& answer) { answer(guest, nullptr); };
    backend.deletions.answerInside = [this](const auto& answer) { answer(guest, nullptr); };
    backend.cardAdds.answerInside = [this](const auto& answer) {
      answer(guest, backendCard, nullptr);
    };
    backend.cardFetches.answerInside = [](const auto& answer) {
      answer(List<HLVSDKCreditCard>{}, nullptr);
    };
  }
  ~InsideTheCallTest() override { HLVSDKPayleven::resetSharedInstance(); }

  void add() { door->addPaymentInstrument(card, address, guest, guestCard()); }

  const std::shared_ptr<HLVSDKPaymentManager> door = HLVSDKPaymentManager::make();
};

TEST_F(InsideTheCallTest, EveryOperationStillCompletesOnceOnTheMainThread) {
  for (const bool onMain : {true, false}) {
    platform->onMainThread = onMain;
    outcome = {};
    guest->token.reset();
    add();
    platform->runEverything();
    EXPECT_EQ(told(), "1x guest own, card backend's, error none");
    EXPECT_TRUE(outcome.onMainThread);

    outcome = {};
    guest->token = "tok";
    add();
    EXPECT_EQ(outcome.count, onMain ? 1 : 0) << "on the main thread nothing has to be posted";
    platform->runEverything();
    EXPECT_EQ(told(), "1x guest own, card backend's, error none");

    outcome = {};
    door->deletePaymentInstrumentWithID("card-1", "default", guest, guestOnly());
    platform->runEverything();
    EXPECT_EQ(told(), "1x guest own, card none, error none");

    outcome = {};
    HLVSDKPayleven::sharedInstance()
        ->paymentInstrumentsSynchronizer()
        ->synchronizePaymentInstrumentsForGuest(guest, succeeded());
    platform->runEverything();
    EXPECT_EQ(outcome.count, 1);
    EXPECT_TRUE(outcome.success);
  }
}

TEST_F(InsideTheCallTest, TheKitMayBeReleasedInsideAnyCallToTheHost) {
  const auto release = [] { HLVSDKPayleven::resetSharedInstance(); };
  provider.tokens.answerInside = [&](const auto& answer) {
    release();
    answer("tok", nullptr);
  };
  add();
  platform->runEverything();
  EXPECT_EQ(outcome.count, 1) << "the call that is under way keeps the manager";

  provider.tokens.answerInside = nullptr;
  HLVSDKPayleven::setSharedInstance(HLVSDKPayleven::initWithConfiguration(nullptr, nullptr));
  add();
  backend.guestUpdates.answerInside = [&](const auto& answer) {
    release();
    answer(guest, nullptr);
  };
  provider.tokens.answer("tok", nullptr);
  platform->runEverything();
  EXPECT_EQ(outcome.count, 2) << "between the two requests of the join";
  EXPECT_EQ(HLVSDKPayleven::sharedInstance(), nullptr);
}

TEST_F(InsideTheCallTest, AServiceThatAnswersTwiceInsideTheCallIsHeardOnce) {
  provider.tokens.answerInside = [](const auto& answer) {
    answer("tok", nullptr);
    answer("tok", nullptr);
  };
  backend.guestUpdates.answerInside = [this](const auto& answer) {
    answer(guest, nullptr);
    answer(guest, makeError("late"));
  };
  add();
  platform->runEverything();
  EXPECT_EQ(told(), "1x guest own, card backend's, error none");
}

TEST_F(InsideTheCallTest, AHostThatAnswersAddressUpdatesInsideTheCallReachesTheAppDirectly) {
  backend.cardUpdates.answerInside = [this](const auto& answer) {
    answer(guest, backendCard, nullptr);
  };
  platform->offMain([&] {
    door->updatePaymentInstrument("card-1", address, guest, guestCard());
    EXPECT_EQ(outcome.count, 1);
  });
  EXPECT_FALSE(outcome.onMainThread);
}

}  // namespace
}  // namespace hlv::testing
