#include "Sandbox/Testing/Scenarios.h"

#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Cards/TestCards.h"
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
  backend::forgetAll(database);
  provider::forgetAll(database);
  removeAllFaults(database);
  resetSandboxTime(database);
  writeNetworkState(database, 1);
  for (const char* table : {"kept_replies", "firings", "events", "operations"}) {
    database.run(std::string("DELETE FROM ") + table);
  }
}

}  // namespace hlv::sandbox
