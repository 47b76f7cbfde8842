// The first card of a guest.
#include <ostream>

#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

const char* const identifierError =
    "required 'identifier', message 'Added instrument to external payment system doesn't have "
    "identifier', by -[HLVSDKPaylevenPaymentInstrumentManager "
    "addFirstPaymentInstrument:billingAddress:forGuest:completion:] in "
    "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager+AddFirst.cpp";

class AddFirstTest : public KitTest {
 protected:
  void start() { manager->addFirstPaymentInstrument(card, address, guest, guestCard()); }

  /// Up to the two backend requests.
  void startAndConfirm() {
    start();
    provider.tokens.answer("tok", nullptr);
    provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
  }

  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager = makeManager();
};

TEST_F(AddFirstTest, CreatesTheTokenConfirmsAndThenAsksTheBackendTwiceAtOnce) {
  start();
  EXPECT_EQ(host->takeTrace(),
            "provider create token for guest@example.com with new[..1111 09/2031 cvv A. Guest] "
            "use case default");
  platform->offMain([&] { provider.tokens.answer("tok", nullptr); });
  EXPECT_EQ(host->takeTrace(), "provider list tok use case default");
  EXPECT_EQ(card->identifier, std::nullopt);

  platform->offMain(
      [&] { provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr); });
  EXPECT_EQ(host->takeTrace(), "") << "the backend is asked from the main thread";
  platform->runMain();
  EXPECT_EQ(card->identifier, "plv-1");
  EXPECT_EQ(host->takeTrace(),
            "backend update guest token=tok\n"
            "backend add card for guest@example.com token=tok");

  platform->offMain([&] { backend.cardAdds.answer(updatedGuest, backendCard, nullptr); });
  platform->runMain();
  EXPECT_EQ(outcome.count, 0);
  platform->offMain([&] { backend.guestUpdates.answer(updatedGuest, nullptr); });
  EXPECT_EQ(outcome.count, 0) << "the join runs on the main queue";
  platform->runMain();
  EXPECT_EQ(told(), "1x guest own, card backend's, error none");
  EXPECT_TRUE(outcome.onMainThread);
}

struct BackendAnswers {
  const char* claim;
  const char* updateError;
  const char* addError;
  bool updateAnswersFirst;
  const char* told;
};

void PrintTo(const BackendAnswers& row, std::ostream* out) { *out << row.claim; }

class FirstErrorTest : public AddFirstTest, public ::testing::WithParamInterface<BackendAnswers> {};

TEST_P(FirstErrorTest, WinsAndClearsALaterCard) {
  const auto& row = GetParam();
  startAndConfirm();
  const auto error = [](const char* text) { return text ? makeError(text) : nullptr; };
  const auto update = [&] { backend.guestUpdates.answer(updatedGuest, error(row.updateError)); };
  if (row.updateAnswersFirst) update();
  backend.cardAdds.answer(updatedGuest, row.addError ? nullptr : backendCard, error(row.addError));
  if (!row.updateAnswersFirst) update();
  platform->runMain();
  EXPECT_EQ(told(), row.told);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, FirstErrorTest,
    ::testing::Values(BackendAnswers{"AddFails", nullptr, "add", true,
                                     "1x guest own, card none, error add"},
                      BackendAnswers{"AddFailsFirst", nullptr, "add", false,
                                     "1x guest own, card none, error add"},
                      BackendAnswers{"UpdateFailsFirst", "update", nullptr, true,
                                     "1x guest own, card none, error update"},
                      BackendAnswers{"BothFailUpdateFirst", "update", "add", true,
                                     "1x guest own, card none, error update"},
                      BackendAnswers{"UpdateFailsAfterTheCardCame", "update", nullptr, false,
                                     "1x guest own, card backend's, error update"},
                      BackendAnswers{"BothFailAddFirst", "update", "add", false,
                                     "1x guest own, card none, error add"}),
    [](const auto& row) { return row.param.claim; });

TEST_F(AddFirstTest, AProviderErrorIsWrappedOnce) {
  start();
  provider.tokens.answer("ignored", makeError("refused"));
  EXPECT_EQ(told(), "1x guest none, card none, error provider(refused)");
}

TEST_F(AddFirstTest, AMissingTokenIsAssertedAndThenReported) {
  start();
  host->takeTrace();
  platform->offMain([&] { provider.tokens.answer(std::nullopt, nullptr); });
  EXPECT_EQ(host->takeTrace(), "assert parameter userToken: nil");
  platform->runMain();
  EXPECT_EQ(madeAs(outcome.error),
            "required 'userToken', message nil, by -[HLVSDKPaylevenPaymentInstrumentManager "
            "addFirstPaymentInstrumentToPayleven:forGuestEmail:completion:]_block_invoke in "
            "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager+AddFirst.cpp");

  start();
  provider.tokens.answer(std::nullopt, nullptr);
  EXPECT_NE(madeAs(outcome.error).find("completion:] in"), std::string::npos)
      << "built on the spot, the error names the method itself";
}

TEST_F(AddFirstTest, AnEmptyTokenIsAToken) {
  start();
  host->takeTrace();
  provider.tokens.answer("", nullptr);
  EXPECT_EQ(host->takeTrace(), "provider list  use case default");
}

TEST_F(AddFirstTest, AnInstrumentWithoutIdentifierLeavesCardAndBackendAlone) {
  instrument->id.reset();
  startAndConfirm();
  EXPECT_EQ(madeAs(outcome.error), identifierError);
  EXPECT_EQ(card->identifier, std::nullopt);
  EXPECT_EQ(backend.cardAdds.count() + backend.guestUpdates.count(), 0u);
}

TEST_F(AddFirstTest, AFailedConfirmationPassesAsItIs) {
  start();
  provider.tokens.answer("tok", nullptr);
  provider.lists.answer(std::nullopt, makeError("list"));
  EXPECT_EQ(told(), "1x guest none, card none, error provider(list)");
}

TEST_F(AddFirstTest, WithoutItsManagerNothingMoreHappens) {
  start();
  manager.reset();
  host->takeTrace();
  provider.tokens.answer("tok", nullptr);
  platform->runEverything();
  EXPECT_EQ(host->takeTrace(), "");
  EXPECT_EQ(outcome.count, 0);
}

TEST_F(AddFirstTest, WithoutItsManagerErrorsAreStillReported) {
  start();
  manager.reset();
  provider.tokens.answer(std::nullopt, makeError("refused"));
  EXPECT_EQ(outcome.count, 1);
}

TEST_F(AddFirstTest, WithoutItsManagerAConfirmedCardIsMarkedButNotRegistered) {
  start();
  provider.tokens.answer("tok", nullptr);
  manager.reset();
  host->takeTrace();
  const std::weak_ptr<FakeGuest> held = guest;
  provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
  platform->runEverything();
  EXPECT_EQ(card->identifier, "plv-1");
  EXPECT_EQ(host->takeTrace(), "");
  EXPECT_EQ(outcome.count, 0);
  EXPECT_EQ(held.use_count(), 1) << "a join that never comes is freed with what it holds";
}

TEST_F(AddFirstTest, ReleasedWhileTheBackendWorksItStillCompletes) {
  startAndConfirm();
  manager.reset();
  backend.guestUpdates.answer(updatedGuest, nullptr);
  backend.cardAdds.answer(updatedGuest, backendCard, nullptr);
  platform->runMain();
  EXPECT_EQ(told(), "1x guest own, card backend's, error none");
}

TEST_F(AddFirstTest, AServiceThatAnswersTwiceIsHeardOnce) {
  start();
  const auto token = provider.tokens.take();
  token("tok", nullptr);
  token("other", makeError("late"));
  EXPECT_EQ(provider.lists.count(), 1u);
  provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
  const auto update = backend.guestUpdates.take();
  update(updatedGuest, nullptr);
  update(updatedGuest, makeError("late"));
  platform->runMain();
  EXPECT_EQ(outcome.count, 0) << "the second answer does not stand for the other request";
  backend.cardAdds.answer(updatedGuest, backendCard, nullptr);
  platform->runMain();
  EXPECT_EQ(told(), "1x guest own, card backend's, error none");
}

TEST_F(AddFirstTest, ANullCompletionDoesAllTheWork) {
  manager->addFirstPaymentInstrument(card, address, guest, nullptr);
  provider.tokens.answer("tok", nullptr);
  provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
  backend.guestUpdates.answer(nullptr, nullptr);
  backend.cardAdds.answer(nullptr, nullptr, makeError("add"));
  platform->runMain();
  EXPECT_EQ(host->trace.size(), 4u);
}

}  // namespace
}  // namespace hlv::testing
