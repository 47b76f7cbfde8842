#include "Sandbox/Testing/Scenarios.h"

#include <algorithm>
#include <utility>

#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Sandbox/Provider/Provider.h"

namespace hlv::sandbox {
namespace {

constexpr std::pair<Scenario, std::string_view> names[] = {
    {Scenario::instrumentWithoutCard, "instrument-without-card"},
    {Scenario::cardWithoutInstrument, "card-without-instrument"},
    {Scenario::halfDeleted, "half-deleted"},
    {Scenario::sameCardTwice, "same-card-twice"},
    {Scenario::lostToken, "lost-token"},
};

}  // namespace

std::string_view textOf(Scenario scenario) {
  return std::find_if(std::begin(names), std::end(names),
                      [&](const auto& row) { return row.first == scenario; })
      ->second;
}

std::optional<Scenario> scenarioNamed(std::string_view name) {
  const auto* found = std::find_if(std::begin(names), std::end(names),
                                   [&](const auto& row) { return row.second == name; });
  return found == std::end(names) ? std::nullopt : std::optional(found->first);
}

std::string noSuchScenario(std::string_view name) {
  std::string possible;
  for (const auto& row : names) (possible += possible.empty() ? "" : ", ") += row.second;
  return "There is no scenario '" + maskedText(name) + "'; possible are: " + possible + ".";
}

std::vector<Scenario> allScenarios() {
  std::vector<Scenario> all;
  for (const auto& row : names) all.push_back(row.first);
  return all;
}

std::string makeScenario(Database& database, const std::string& email, Scenario scenario) {
  if (scenario == Scenario::instrumentWithoutCard) {
    const auto card = EnteredCard::make(findTestCard("amex")->fields);
    provider::storeOrphan(database, email, *card);
    return "";
  }
  if (scenario == Scenario::lostToken) {
    return backend::loseToken(database, email)
               ? ""
               : "The guest has no token to lose; add a first card.";
  }
  const auto cards = readCards(database, email);
  if (cards.empty()) return "The guest has no card; add one first.";
  const auto& newest = cards.back();
  const auto identifier = newest.externalIdentifier.value_or("");
  if (scenario == Scenario::halfDeleted) {
    backend::deleteCard(database, {backend::Caller::Kind::anyone, email}, newest.halvoID);
    return "";
  }
  const bool isDone = scenario == Scenario::sameCardTwice
                          ? provider::storeAgain(database, identifier)
                          : provider::loseInstrument(database, identifier);
  return isDone ? "" : "The provider does not hold the guest's newest card.";
}

}  // namespace hlv::sandbox
