// Which way an added card goes.
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

class AddDispatchTest : public KitTest {
 protected:
  void start() { manager->addPaymentInstrument(card, address, guest, guestCard()); }
  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager = makeManager();
};

TEST_F(AddDispatchTest, OnlyAGuestWithANonEmptyTokenTakesTheFurtherCardPath) {
  start();
  guest->token = "";
  start();
  EXPECT_EQ(provider.tokens.count(), 2u);
  guest->token = "tok";
  start();
  EXPECT_EQ(provider.adds.count(), 1u);
  manager->addPaymentInstrument(card, address, nullptr, guestCard());
  EXPECT_EQ(provider.tokens.count(), 3u);
}

TEST_F(AddDispatchTest, AnInvalidCardIsReportedFirstWithItsOwnErrorOrNone) {
  host->network->state = 0;
  card->valid = false;
  card->ownError = makeError("expired");
  start();
  EXPECT_EQ(outcome.error, card->ownError);
  card->ownError = nullptr;
  platform->offMain([&] { start(); });
  platform->runMain();
  EXPECT_EQ(told(), "2x guest none, card none, error none");
  EXPECT_TRUE(outcome.onMainThread);
  EXPECT_EQ(host->takeTrace(), "");
}

TEST_F(AddDispatchTest, WithoutACardThereIsNothingValid) {
  manager->addPaymentInstrument(nullptr, address, guest, guestCard());
  EXPECT_EQ(told(), "1x guest none, card none, error none");
}

TEST_F(AddDispatchTest, TheConnectionIsReadAfreshOnEveryAdd) {
  manager->setConnectionAvaiable(true);
  host->network->state = 0;
  platform->offMain([&] { start(); });
  EXPECT_EQ(outcome.count, 0);
  platform->runMain();
  EXPECT_EQ(told(), "1x guest none, card none, error code 1 in 'URL', message nil");
  EXPECT_FALSE(manager->isConnectionAvailable());

  host->network->state = 3;
  start();
  EXPECT_TRUE(manager->isConnectionAvailable());
  EXPECT_EQ(provider.tokens.count(), 1u);
}

TEST_F(AddDispatchTest, ANullCompletionIsSkippedOnEveryFailurePath) {
  const auto addToNobody = [&] { manager->addPaymentInstrument(card, address, guest, nullptr); };
  host->network->state = 0;
  for (const bool valid : {true, false}) {
    card->valid = valid;
    addToNobody();
    platform->offMain(addToNobody);
  }
  EXPECT_EQ(platform->main->waiting(), 0u);
}

}  // namespace
}  // namespace hlv::testing
