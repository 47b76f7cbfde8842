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
  constexpr auto token = Operation::createUserToken;
  const std::pair<Fault, const char*> rows[] = {
      {{.operation = Operation::removeInstrument, .kind = FaultKind::noList}, "twice"},
      {{.operation = Operation::updateCard, .useCase = "private"}, "no use case"},
      {{.operation = token, .useCase = "x"}, "business"},
      {{.operation = token, .kind = FaultKind::delay}, "milliseconds"},
      {{.operation = token, .probability = 101}, "hundred"},
      {{.operation = token, .status = 200}, "status"},
      {{.operation = token, .headers = {{"A", "b\r\nC: d"}}}, "header"},
      {{.operation = token, .kind = FaultKind::cut}, "bytes"},
      {{.operation = token, .spreadMilliseconds = 5, .distribution = Distribution::logNormal},
       "median"},
  };
  const auto tester = sandbox->tester();
  for (const auto& [fault, says] : rows) {
    EXPECT_NE(tester->arm(fault).problem().find(says), std::string::npos) << says;
  }
  EXPECT_TRUE(tester->armed().empty());
  for (const auto operation : allOperations()) EXPECT_TRUE(tester->arm({.operation = operation}));
  const std::pair<std::string, const char*> names[] = {
      {operationNamed("4111 1111 1111 1111").problem(), "'**** **** **** 1111'"},
      {operationNamed("pay").problem(), "fetchGuestCreditCards"},
      {faultKindNamed("4111111111111111").problem(), "'************1111'"},
      {scenarioNamed("4111111111111111").problem(), "'************1111'"}};
  for (const auto& [sentence, says] : names) {
    EXPECT_NE(sentence.find(says), std::string::npos) << sentence;
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
  const auto tester = sandbox->tester();
  std::string fired;
  for (const auto& each : tester->firings()) fired += std::to_string(each.faultNumber);
  EXPECT_EQ(fired, "1212");
  EXPECT_EQ(tester->armed().size(), 1U);
  tester->clearFaults();
  // Refused reaches nobody; the others were served, and only the caller does not know.
  std::size_t served = 1;
  for (const auto& [kind, code] : {std::pair("refused", 1), {"reset", 3}, {"garbage", 4}}) {
    arm("addPaymentInstrument", kind);
    EXPECT_EQ(nameOf(addInstrument("mastercard", token)),
              "HLVTransportErrorDomain " + std::to_string(code));
    EXPECT_EQ(sandbox->providerInstruments().size(), code == 1 ? 1 : ++served) << kind;
  }
}

TEST_F(Faulty, ChanceIsRepeatableUnderASeedAndASparedCallCountsNothingDown) {
  std::string first;
  for (int run = 0; run < 2; ++run) {
    std::filesystem::remove(storePath());
    start(7);
    arm("fetchGuestCreditCards", "error", [](Fault& fault) {
      fault.probability = 50;
      fault.remaining = 5;
    });
    std::string met;
    for (int i = 0; i < 40; ++i) met += std::get<1>(fetchCards()) ? '!' : '.';
    EXPECT_EQ(std::count(met.begin(), met.end(), '!'), 5);
    EXPECT_NE(met.substr(0, 5), "!!!!!");
    EXPECT_TRUE(sandbox->tester()->armed().empty());
    if (run == 0) first = met;
    EXPECT_EQ(met, first);
    stop();
  }
}

TEST_F(Faulty, EveryMemberIsStoredAndDelaysSpreadAsTheirDistributionSays) {
  start(7);
  Fault fault{.operation = Operation::listInstruments,
              .remaining = std::nullopt,
              .delayMilliseconds = 1'000,
              .spreadMilliseconds = 100,
              .status = 429,
              .headers = {{"Retry-After", "3"}, {"X-Note", "a: b"}},
              .useCase = "business"};
  const auto store = Store::open(storePath()).value();
  const auto tester = sandbox->tester();
  for (const auto distribution :
       {Distribution::uniform, Distribution::normal, Distribution::logNormal}) {
    fault.distribution = distribution;
    fault.number = 0;
    tester->clearFaults();
    fault.number = tester->arm(fault).value();
    EXPECT_EQ(tester->armed(), std::vector{fault});
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

}  // namespace
}  // namespace hlv::sandbox
