#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::sandbox {
namespace {

using Faulty = SandboxTest;

TEST_F(Faulty, AFaultThatMakesNoSenseIsRefusedWithWhatIsPossible) {
  start();
  const struct {
    const char* operation;
    const char* kind;
    std::function<void(Fault&)> change;
    const char* says;
  } rows[] = {
      {"pay", "error", {}, "fetchGuestCreditCards"},
      {"removePaymentInstrument", "no-list", {}, "twice"},
      {"updateCreditCard", "error", [](auto& fault) { fault.useCase = "private"; }, "no use case"},
      {"createUserToken", "error", [](auto& fault) { fault.useCase = "x"; }, "business"},
      {"createUserToken", "error", [](auto& fault) { fault.remaining = 0; }, "one call"},
      {"createUserToken", "delay", {}, "milliseconds"},
      {"4111 1111 1111 1111", "error", {}, "'**** **** **** 1111'"},
      {"createUserToken", "4111111111111111", {}, "'************1111'"},
  };
  for (const auto& row : rows) {
    EXPECT_NE(arm(row.operation, row.kind, row.change).find(row.says), std::string::npos)
        << row.says;
  }
  EXPECT_TRUE(sandbox->faults().armed().empty());
  for (const auto& operation : Faults::operations()) EXPECT_EQ(arm(operation, "error"), "");
}

TEST_F(Faulty, ACallThatIsNeverAnsweredFreesItsCallbackAndIsNotAwaited) {
  start();
  arm("fetchGuestCreditCards", "never");
  const auto held = std::make_shared<int>(0);
  backend->fetchGuestCreditCards(guest, [held](const Cards&, const ErrorPtr&) { FAIL(); });
  pumpUntilQuiet();
  EXPECT_EQ(held.use_count(), 1);
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
  arm("getPaymentInstrumentsList", "no-identifier");
  EXPECT_EQ(std::get<0>(list(token))->back()->identifier(), std::nullopt);
  arm("getPaymentInstrumentsList", "other-state");
  EXPECT_EQ(std::get<0>(list(token))->back()->state(), 2U);
  EXPECT_EQ(nameOf(removeInstrument(stored[1], token)), "none") << "removable all the same";
  EXPECT_EQ(std::get<0>(list(token))->back()->identifier(), stored[2]->identifier());
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

TEST_F(Faulty, FaultsAreCountedDownOldestFirstAndRecordedByCallsThatLeaveThePhone) {
  start();
  const auto token = std::get<0>(createToken("visa"));
  arm("getPaymentInstrumentsList", "error", [](Fault& fault) {
    fault.useCase = "business";
    fault.remaining = 2;
    fault.code = 1;
  });
  arm("getPaymentInstrumentsList", "error", [](Fault& fault) {
    fault.remaining = std::nullopt;
    fault.code = 2;
  });
  sandbox->setReachable(false);
  EXPECT_EQ(nameOf(std::get<1>(list(token, "business"))), "HLVURLErrorDomain 1");
  sandbox->setReachable(true);
  std::string met;
  for (const char* useCase : {"business", "private", "business", "business"}) {
    met += std::to_string(std::get<1>(list(token, useCase))->code());
  }
  EXPECT_EQ(met, "1212");
  std::string fired;
  for (const auto& each : sandbox->faults().firings()) fired += std::to_string(each.faultNumber);
  EXPECT_EQ(fired, "1212");
  EXPECT_EQ(sandbox->faults().armed().size(), 1U);
  sandbox->faults().clear();
  EXPECT_EQ(nameOf(std::get<1>(list(token, "business"))), "none");
}

}  // namespace
}  // namespace hlv::sandbox
