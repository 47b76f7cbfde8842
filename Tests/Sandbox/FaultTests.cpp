#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::sandbox {
namespace {

using Faulty = SandboxTest;

TEST_F(Faulty, AFaultThatMakesNoSenseIsRefusedWithWhatIsPossible) {
  start();
  const auto problem = [this](
                           const std::string& operation, const std::string& kind,
                           const std::function<void(Fault&)>& change = [](Fault&) {}) {
    Fault fault;
    fault.operation = operation;
    fault.kind = kind;
    change(fault);
    return sandbox->faults().arm(fault);
  };
  EXPECT_NE(problem("pay", "error").find("fetchGuestCreditCards"), std::string::npos);
  EXPECT_NE(problem("removePaymentInstrument", "no-list").find("twice"), std::string::npos);
  EXPECT_EQ(problem("createUserToken", "no-list").find("no-list,"), std::string::npos);
  EXPECT_NE(problem("updateCreditCard", "error", [](auto& fault) { fault.useCase = "private"; }),
            "");
  EXPECT_NE(problem("createUserToken", "error", [](auto& fault) { fault.useCase = "x"; }), "");
  EXPECT_NE(problem("createUserToken", "error", [](auto& fault) { fault.remaining = 0; }), "");
  EXPECT_NE(problem("createUserToken", "delay"), "");
  EXPECT_TRUE(sandbox->faults().armed().empty());
  for (const auto& operation : Faults::operations()) EXPECT_EQ(problem(operation, "error"), "");
}

TEST_F(Faulty, AnErrorKeepsTheOperationFromHappening) {
  start();
  arm("createUserToken", "error", [](Fault& fault) { fault.code = 77; });
  EXPECT_EQ(nameOf(std::get<1>(createToken("visa"))), "PLVErrorDomain 77");
  EXPECT_TRUE(sandbox->providerInstruments().empty());
  arm("addCreditCardForGuest", "error");
  EXPECT_EQ(nameOf(std::get<2>(addCard("visa", guest))), "HLVBackendErrorDomain 500");
  EXPECT_TRUE(sandbox->backendCards().empty());
}

TEST_F(Faulty, ACallThatIsNeverAnsweredFreesItsCallbackAndIsNotAwaited) {
  start();
  arm("fetchGuestCreditCards", "never");
  const auto held = std::make_shared<int>(0);
  backend->fetchGuestCreditCards(guest, [held](const Cards&, const ErrorPtr&) { FAIL(); });
  pumpUntilQuiet();
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(Faulty, ResultsCanBeMissingWhileTheWorkIsDone) {
  start();
  arm("createUserToken", "no-token");
  EXPECT_EQ(createToken("visa"), std::make_tuple(NullableString(), ErrorPtr()));
  ASSERT_EQ(sandbox->providerInstruments().size(), 1U);
  const auto token = std::get<0>(createToken("mastercard"));
  arm("getPaymentInstrumentsList", "no-list");
  EXPECT_EQ(list(token), std::make_tuple(Instruments(), ErrorPtr()));
  arm("fetchGuestCreditCards", "no-list");
  const auto cards = answerTo<Cards, ErrorPtr>(
      [&](auto completion) { backend->fetchGuestCreditCards(guest, completion); });
  EXPECT_EQ(cards, std::make_tuple(Cards(), ErrorPtr()));
  EXPECT_EQ(std::get<0>(list(token))->size(), 2U);
}

TEST_F(Faulty, InstrumentsCanBeStoredOrListedWithoutAnIdentifierOrInAnotherState) {
  start();
  arm("createUserToken", "other-state");
  const auto token = std::get<0>(createToken("visa"));
  arm("addPaymentInstrument", "no-identifier");
  addInstrument("mastercard", token);
  addInstrument("amex", token);
  const auto stored = *std::get<0>(list(token));
  EXPECT_EQ(stored[0]->state(), 2U);
  EXPECT_EQ(stored[1]->identifier(), std::nullopt);
  EXPECT_TRUE(stored[2]->identifier() && stored[2]->state() == 0);
  arm("getPaymentInstrumentsList", "no-identifier");
  EXPECT_EQ(std::get<0>(list(token))->back()->identifier(), std::nullopt);
  arm("getPaymentInstrumentsList", "other-state");
  EXPECT_EQ(std::get<0>(list(token))->back()->state(), 2U);
  EXPECT_EQ(nameOf(removeInstrument(stored[1], token)), "none") << "removable all the same";
  EXPECT_EQ(std::get<0>(list(token))->back()->identifier(), stored[2]->identifier());
}

TEST_F(Faulty, TestCardsBringTheSameAboutWithoutAFault) {
  start();
  EXPECT_EQ(createToken("no-token"), std::make_tuple(NullableString(), ErrorPtr()));
  const auto token = std::get<0>(createToken("other-state"));
  addInstrument("no-identifier", token);
  const auto stored = *std::get<0>(list(token));
  ASSERT_EQ(stored.size(), 3U);
  EXPECT_EQ(stored[1]->state(), 2U);
  EXPECT_EQ(stored[2]->identifier(), std::nullopt);
}

TEST_F(Faulty, TwiceAnswersTwiceWithTheSameResults) {
  start();
  arm("createUserToken", "twice");
  const auto answers = answersTo<NullableString, ErrorPtr>([&](auto completion) {
    provider->createUserToken(email, newInstrument(findTestCard("visa")->fields), "default",
                              completion);
  });
  ASSERT_EQ(answers.size(), 2U);
  EXPECT_EQ(answers[0], answers[1]);
  EXPECT_EQ(sandbox->providerInstruments().size(), 1U);
}

TEST_F(Faulty, ADelayedAnswerComesAfterEveryCallOfTheSameTurnHoweverShortItsDelay) {
  start();
  arm("updateCurrentGuestWithRequest", "error", [](Fault& fault) { fault.delayMilliseconds = 1; });
  std::string order;
  backend->updateCurrentGuestWithRequest(
      nullptr, [&](const auto&, const ErrorPtr& error) { order += error ? "late" : "?"; });
  for (int i = 0; i < 5; ++i) {
    backend->fetchGuestCreditCards(guest, [&](const Cards&, const ErrorPtr&) { order += "."; });
  }
  pumpUntilQuiet();
  EXPECT_EQ(order, ".....late");
}

TEST_F(Faulty, FaultsAreCountedDownOldestFirstRecordedAndOutliveTheProcess) {
  start();
  const auto token = std::get<0>(createToken("visa", "default"));
  arm("getPaymentInstrumentsList", "error", [](Fault& fault) {
    fault.useCase = "business";
    fault.remaining = 2;
    fault.code = 1;
  });
  arm("getPaymentInstrumentsList", "error", [](Fault& fault) {
    fault.remaining = std::nullopt;
    fault.code = 2;
  });
  EXPECT_EQ(nameOf(std::get<1>(list(token, "business"))), "PLVErrorDomain 1");
  start();
  EXPECT_EQ(nameOf(std::get<1>(list(token, "private"))), "PLVErrorDomain 2");
  EXPECT_EQ(nameOf(std::get<1>(list(token, "business"))), "PLVErrorDomain 1");
  EXPECT_EQ(nameOf(std::get<1>(list(token, "business"))), "PLVErrorDomain 2");
  EXPECT_EQ(sandbox->faults().armed().size(), 1U);
  std::vector<std::int64_t> fired;
  for (const auto& firing : sandbox->faults().firings()) fired.push_back(firing.faultNumber);
  EXPECT_EQ(fired, (std::vector<std::int64_t>{1, 2, 1, 2}));
  sandbox->faults().clear();
  EXPECT_EQ(nameOf(std::get<1>(list(token, "business"))), "none");
}

}  // namespace
}  // namespace hlv::sandbox
