#include "Sandbox/Testing/Scenarios.h"

#include <utility>

#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/Faults/FaultTables.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Sandbox/Provider/Provider.h"
#include "Sandbox/Store/Clock.h"
#include "Values/Names.h"

namespace hlv::sandbox {
namespace {

constexpr Names<Scenario, 5> scenarios{{
    {Scenario::instrumentWithoutCard, "instrument-without-card"},
    {Scenario::cardWithoutInstrument, "card-without-instrument"},
    {Scenario::halfDeleted, "half-deleted"},
    {Scenario::sameCardTwice, "same-card-twice"},
    {Scenario::lostToken, "lost-token"},
}};

}  // namespace

std::string_view textOf(Scenario scenario) { return scenarios.of(scenario); }

Result<Scenario> scenarioNamed(std::string_view name) {
  return scenarios.require(name, "scenario", maskedText(name));
}

std::vector<Scenario> allScenarios() { return scenarios.values(); }

Result<> makeScenario(Database& database, const std::string& email, Scenario scenario) {
  if (scenario == Scenario::instrumentWithoutCard) {
    provider::storeOrphan(database, email, *EnteredCard::make(findTestCard("amex")->fields));
    return {};
  }
  if (scenario == Scenario::lostToken) {
    if (backend::loseToken(database, email)) return {};
    return Result<>::failure("The guest has no token to lose; add a first card.");
  }
  const auto cards = readCards(database, email);
  if (cards.empty()) return Result<>::failure("The guest has no card; add one first.");
  const auto& newest = cards.back();
  const auto identifier = newest.externalIdentifier.value_or("");
  if (scenario == Scenario::halfDeleted) {
    backend::deleteCard(database, {backend::Caller::Kind::anyone, email}, newest.halvoID);
    return {};
  }
  const bool isDone = scenario == Scenario::sameCardTwice
                          ? provider::storeAgain(database, identifier)
                          : provider::loseInstrument(database, identifier);
  if (isDone) return {};
  return Result<>::failure("The provider does not hold the guest's newest card.");
}

void forgetEverything(Database& database) {
  // What refers to a row goes before it.
  for (const char* table :
       {"backend_cards", "backend_sessions", "backend_guests", "provider_instruments",
        "provider_users", "faults", "firings", "kept_replies", "events", "operations"}) {
    database.run(std::string("DELETE FROM ") + table);
  }
  backend::signOut(database);
  resetSandboxTime(database);
  writeNetworkState(database, 1);
}

namespace {

/// Does `change` for the signed-in guest; a refusal of the services is its result.
template <class Change>
Result<> changeSides(Store& store, Change change) {
  try {
    return store.write([&](Database& database) {
      const auto email = backend::signedInEmail(database);
      return email ? change(database, *email) : Result<>::failure("Nobody is signed in.");
    });
  } catch (const Refusal& refusal) {
    return Result<>::failure(refusal.what());
  }
}

class EmbeddedTester final : public Tester {
 public:
  EmbeddedTester(std::shared_ptr<Store> store, std::shared_ptr<Journal> journal)
      : store_(std::move(store)), journal_(std::move(journal)) {}

  Result<> addOrphanInstrument(const CardFields& card) override {
    const auto entered = EnteredCard::make(card);
    auto done = changeSides(*store_, [&](Database& database, const std::string& email) -> Result<> {
      provider::storeOrphan(database, email, *entered);
      return {};
    });
    if (done) journal_->record("app", "provider", "store an orphan instrument");
    return done;
  }

  Result<> makeScenario(Scenario scenario) override {
    auto done = changeSides(*store_, [&](Database& database, const std::string& email) {
      return sandbox::makeScenario(database, email, scenario);
    });
    if (done) journal_->record("app", "app", "scenario " + std::string(textOf(scenario)));
    return done;
  }

  Result<std::int64_t> arm(const Fault& fault) override {
    using Armed = Result<std::int64_t>;
    if (const auto check = checkFault(fault); !check) return Armed::failure(check.problem());
    try {
      return store_->write([&](Database& database) { return insertFault(database, fault); });
    } catch (const StoreFailure& failure) {
      return Armed::failure(failure.what());
    }
  }

  std::vector<Fault> armed() override { return store_->read(readFaults); }

  std::vector<Firing> firings() override { return store_->read(readFirings); }

  void clearFaults() override { store_->write(removeAllFaults); }

 private:
  const std::shared_ptr<Store> store_;
  const std::shared_ptr<Journal> journal_;
};

}  // namespace

std::shared_ptr<Tester> makeTester(std::shared_ptr<Store> store, std::shared_ptr<Journal> journal) {
  return std::make_shared<EmbeddedTester>(std::move(store), std::move(journal));
}

}  // namespace hlv::sandbox
