// Finding the instrument that the provider has just stored.
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

#define PROCESS_METHOD                        \
  "-[HLVSDKPaylevenPaymentInstrumentManager " \
  "processAddedPaymentInstrument:paylevenToken:completion:]"
const std::string sourceFile =
    " in Public/Managers/HLVSDKPaylevenPaymentInstrumentManager+Confirm.cpp";

class ConfirmTest : public KitTest {
 protected:
  void start() { manager->processAddedPaymentInstrument(card, "tok", tokenInstrument()); }
  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager = makeManager();
};

TEST_F(ConfirmTest, ReportsTheTokenAndTheInstrumentAfterTheCurrentMainThreadWork) {
  card->useCase = "private";
  start();
  EXPECT_EQ(host->takeTrace(), "provider list tok use case private");
  manager.reset();  // Goes on without the manager.
  platform->offMain(
      [&] { provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr); });
  EXPECT_EQ(outcome.count, 0);
  platform->runMain();
  EXPECT_EQ(outcome.count, 1);
  EXPECT_TRUE(outcome.onMainThread);
  EXPECT_EQ(outcome.token, "tok");
  EXPECT_EQ(outcome.instrument, instrument);
  EXPECT_EQ(outcome.error, nullptr);
}

TEST_F(ConfirmTest, AMissingCardIsReportedBeforeAMissingToken) {
  manager->processAddedPaymentInstrument(nullptr, std::nullopt, tokenInstrument());
  EXPECT_EQ(host->takeTrace(), "assert parameter paymentInstrument: nil");
  EXPECT_EQ(madeAs(outcome.error),
            "required 'paymentInstrument', message nil, by " PROCESS_METHOD + sourceFile);
  EXPECT_EQ(outcome.token, std::nullopt);

  manager->processAddedPaymentInstrument(nullptr, "tok", tokenInstrument());
  EXPECT_EQ(outcome.token, "tok") << "the token that there is comes along";
}

TEST_F(ConfirmTest, AMissingTokenReportedFromAnotherThreadNamesThePostedBlock) {
  platform->offMain(
      [&] { manager->processAddedPaymentInstrument(card, std::nullopt, tokenInstrument()); });
  EXPECT_EQ(host->takeTrace(), "assert parameter paylevenToken: nil");
  platform->runMain();
  EXPECT_EQ(madeAs(outcome.error), "required 'paylevenToken', message nil, by " PROCESS_METHOD
                                   "_block_invoke" +
                                       sourceFile);
  EXPECT_EQ(provider.lists.count(), 0u);
}

TEST_F(ConfirmTest, AFailedListIsWrappedAndKeepsTheToken) {
  start();
  provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, makeError("list"));
  EXPECT_EQ(madeAs(outcome.error), "provider(list)");
  EXPECT_EQ(outcome.token, "tok");
  EXPECT_EQ(outcome.instrument, nullptr);
}

TEST_F(ConfirmTest, NoMatchIsNoError) {
  instrument->stateNumber = 2;  // Not usable, so it does not match.
  start();
  provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
  EXPECT_EQ(outcome.token, "tok");
  EXPECT_EQ(outcome.instrument, nullptr);
  EXPECT_EQ(outcome.error, nullptr);

  start();
  host->takeTrace();
  provider.lists.answer(std::nullopt, nullptr);
  EXPECT_EQ(host->takeTrace(), "assert parameter paylevenInstruments: nil");
  EXPECT_EQ(outcome.count, 2);
  EXPECT_EQ(outcome.error, nullptr);
}

TEST_F(ConfirmTest, ANullCompletionStillAssertsAndAsks) {
  manager->processAddedPaymentInstrument(nullptr, "tok", nullptr);
  manager->processAddedPaymentInstrument(card, "tok", nullptr);
  EXPECT_EQ(host->takeTrace(),
            "assert parameter paymentInstrument: nil\nprovider list tok use case default");
  platform->offMain([&] { provider.lists.answer(std::nullopt, makeError("list")); });
  EXPECT_EQ(platform->main->waiting(), 0u) << "nothing is posted for nobody";
}

}  // namespace
}  // namespace hlv::testing
