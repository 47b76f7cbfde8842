#include <algorithm>
#include <filesystem>

#include "Sandbox/Faults/FaultTables.h"
#include "Sandbox/Store/Store.h"
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
      {"createUserToken", "error", [](auto& fault) { fault.probability = 101; }, "hundred"},
      {"createUserToken", "error", [](auto& fault) { fault.spreadMilliseconds = -1; }, "spreads"},
      {"createUserToken", "reset", [](auto& fault) { fault.status = 429; }, "status"},
      {"createUserToken", "error", [](auto& fault) { fault.status = 200; }, "status"},
      {"createUserToken", "error",
       [](auto& fault) {
         fault.headers = {{"A", "b\r\nC: d"}};
       },
       "header"},
      {"createUserToken", "error",
       [](auto& fault) {
         fault.headers = {{"Connection", "x"}};
       },
       "header"},
      {"createUserToken", "cut", {}, "bytes"},
      {"createUserToken", "reset", [](auto& fault) { fault.bytes = 3; }, "bytes"},
      {"createUserToken", "slow", [](auto& fault) { fault.bytesPerSecond = 0; }, "per second"},
      {"createUserToken", "delay",
       [](auto& fault) {
         fault.spreadMilliseconds = 5;
         fault.distribution = Distribution::logNormal;
       },
       "median"},
      {"4111 1111 1111 1111", "error", {}, "'**** **** **** 1111'"},
      {"createUserToken", "4111111111111111", {}, "'************1111'"},
  };
  for (const auto& row : rows) {
    EXPECT_NE(arm(row.operation, row.kind, row.change).find(row.says), std::string::npos)
        << row.says;
  }
  EXPECT_TRUE(sandbox->faults().armed().empty());
  for (const auto operation : allOperations()) {
    Fault fault;
    fault.operation = operation;
    EXPECT_EQ(sandbox->faults().arm(fault), "");
  }
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

TEST_F(Faulty, ARefusedCallReachesNobodyAndALostAnswerWasServed) {
  start();
  const auto token = std::get<0>(createToken("visa"));
  const struct {
    const char* kind;
    const char* error;
    std::size_t stored;
  } rows[] = {{"refused", "HLVTransportErrorDomain 1", 1},
              {"reset", "HLVTransportErrorDomain 3", 2},
              {"garbage", "HLVTransportErrorDomain 4", 3}};
  for (const auto& row : rows) {
    arm("addPaymentInstrument", row.kind);
    EXPECT_EQ(nameOf(addInstrument("mastercard", token)), row.error);
    EXPECT_EQ(sandbox->providerInstruments().size(), row.stored) << row.kind;
  }
}

TEST_F(Faulty, ChanceIsRepeatableUnderASeedAndASparedCallCountsNothingDown) {
  std::string first;
  for (int run = 0; run < 2; ++run) {
    std::filesystem::remove(storePath());
    start(7);
    arm("updateCurrentGuestWithRequest", "error", [](Fault& fault) {
      fault.probability = 50;
      fault.remaining = 5;
    });
    std::string met;
    for (int i = 0; i < 40; ++i) met += std::get<1>(storeToken("tok")) ? '!' : '.';
    EXPECT_EQ(std::count(met.begin(), met.end(), '!'), 5);
    EXPECT_NE(met.substr(0, 5), "!!!!!");
    EXPECT_TRUE(sandbox->faults().armed().empty());
    if (run == 0) first = met;
    EXPECT_EQ(met, first);
    stop();
  }
}

TEST_F(Faulty, EveryMemberOfAFaultIsStoredAndDelaysSpreadAsTheirDistributionSays) {
  start(7);
  Fault fault;
  fault.operation = Operation::listInstruments;
  fault.headers = {{"Retry-After", "3"}, {"X-Note", "a: b"}};
  fault.status = 429;
  fault.useCase = "business";
  fault.delayMilliseconds = 1'000;
  fault.spreadMilliseconds = 100;
  fault.remaining = std::nullopt;
  const auto store = Store::open(storePath()).store;
  for (const auto distribution :
       {Distribution::uniform, Distribution::normal, Distribution::logNormal}) {
    fault.distribution = distribution;
    fault.number = 0;
    sandbox->faults().clear();
    ASSERT_EQ(sandbox->faults().arm(fault), "");
    fault.number = sandbox->faults().armed().at(0).number;
    EXPECT_EQ(sandbox->faults().armed(), std::vector{fault});
    std::vector<std::int64_t> delays;
    store->write([&](Database& database) {
      for (int i = 0; i < 1'000; ++i) {
        delays.push_back(takeFault(database, fault.operation, fault.useCase)->delayMilliseconds);
      }
    });
    std::sort(delays.begin(), delays.end());
    const bool isUniform = distribution == Distribution::uniform;
    EXPECT_NEAR(static_cast<double>(delays[500]), isUniform ? 1'050 : 1'000, 15);
    EXPECT_NEAR(static_cast<double>(delays[840]), isUniform ? 1'084 : 1'100, 15);
    EXPECT_EQ(delays.front() < 1'000, !isUniform);
  }
}

using Scenarios = SandboxTest;

TEST_F(Scenarios, EachBringsTheTwoSidesApartInItsOwnWay) {
  start();
  for (const auto& scenario : Sandbox::scenarios())
    EXPECT_NE(sandbox->makeScenario(scenario), "") << scenario;
  EXPECT_NE(sandbox->makeScenario("4111111111111111").find("'************1111'"),
            std::string::npos);
  const auto token = std::get<0>(createToken("visa"));
  storeToken(token);
  const auto identifier = sandbox->providerInstruments()[0].identifier;
  addCard("visa", guest, identifier);
  const auto sides = [&] {
    return std::to_string(sandbox->backendCards().size()) +
           std::to_string(sandbox->providerInstruments().size()) +
           (guest->paylevenToken() ? "t" : "-");
  };
  const std::pair<const char*, const char*> rows[] = {{"same-card-twice", "12t"},
                                                      {"instrument-without-card", "13t"},
                                                      {"card-without-instrument", "12t"},
                                                      {"half-deleted", "02t"},
                                                      {"lost-token", "02-"}};
  for (const auto& [scenario, expected] : rows) {
    EXPECT_EQ(sandbox->makeScenario(scenario), "") << scenario;
    EXPECT_EQ(sides(), expected) << scenario;
  }
  arm("createUserToken", "error");
  sandbox->setReachable(false);
  sandbox->reset();
  EXPECT_EQ(sandbox->signedInEmail(), std::nullopt);
  EXPECT_TRUE(sandbox->isReachable());
  EXPECT_TRUE(sandbox->faults().armed().empty());
  sandbox->signIn(email);
  EXPECT_EQ(sandbox->backendCards().size() + sandbox->providerInstruments().size(), 0u);
}

}  // namespace
}  // namespace hlv::sandbox
