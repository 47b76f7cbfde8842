#include "Sandbox/Backend/Backend.h"
#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Backend/StoredCard.h"
#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/Faults/FaultTables.h"
#include "Sandbox/JSON/CardRecords.h"
#include "Sandbox/JSON/FaultRecords.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/Provider/Provider.h"
#include "Sandbox/Records/AddressKeys.h"
#include "Sandbox/Records/Pairs.h"
#include "Sandbox/Testing/Scenario.h"
#include "Server/Console/Console.h"
#include "Server/Http/HttpError.h"
#include "Values/Names.h"

namespace hlv::server {
namespace {

namespace keys = sandbox::addressKeys;

Json cardJson(const std::shared_ptr<HLVSDKCreditCard>& card) {
  const auto stored = std::dynamic_pointer_cast<sandbox::StoredCard>(card);
  return stored ? sandbox::jsonOf(stored->values()) : Json();
}

}  // namespace

Json storedData(sandbox::Database& database) {
  const auto email = sandbox::backend::signedInEmail(database);
  std::vector<sandbox::BackendCard> cards;
  std::vector<sandbox::ProviderInstrument> instruments;
  Json guest;
  if (email) {
    cards = sandbox::readCards(database, *email);
    instruments = sandbox::provider::instrumentsOf(database, *email);
    guest = {{"email", *email},
             {"has_token", sandbox::readGuestToken(database, *email).has_value()}};
  }
  auto pairs = Json::array();
  for (const auto& [card, instrument] : sandbox::pairsOf(cards, instruments)) {
    pairs.push_back({{"card", card ? sandbox::jsonOf(*card) : Json()},
                     {"instrument", instrument ? sandbox::jsonOf(*instrument) : Json()}});
  }
  return {
      {"guest", std::move(guest)},
      {"network", isReachable(sandbox::readNetworkState(database))},
      {"pairs", std::move(pairs)},
      {"faults", sandbox::listOf(sandbox::readFaults(database))},
      {"oldest_operation", database.integer("SELECT coalesce(min(number), 0) FROM operations")}};
}

Json choices() {
  constexpr std::size_t shown = 4;
  auto cards = Json::array();
  for (const auto& card : sandbox::testCards()) {
    cards.push_back({{"name", card.name},
                     {"brand", sandbox::findCardBrand(card.fields.pan)->name},
                     {"last_four_digits", card.fields.pan.substr(card.fields.pan.size() - shown)},
                     {"effect", card.effect}});
  }
  auto operations = Json::array();
  for (const auto operation : sandbox::allOperations()) {
    operations.push_back({{"name", sandbox::textOf(operation)},
                          {"kinds", namesOf(sandbox::kindsOf(operation))},
                          {"has_use_case", sandbox::hasUseCase(operation)}});
  }
  return {{"test_cards", std::move(cards)},
          {"use_cases", {"default", "private", "business"}},
          {"scenarios", namesOf(sandbox::allScenarios())},
          {"operations", std::move(operations)}};
}

HttpReply replyOf(const App::Outcome& outcome, const std::string& requestID) {
  if (outcome.refusal) return errorReply(*outcome.refusal, requestID);
  const auto& error = outcome.call.error;
  Json body = {{"operation", outcome.operation},
               {"answers", outcome.call.completions},
               {"credit_card", cardJson(outcome.call.card)},
               {"failure", nullptr}};
  if (error) {
    body["failure"] = {{"domain", error->domain()},
                       {"number", error->code()},
                       {"message", error->localizedDescription().value_or("")}};
  }
  return {.body = sandbox::textOf(body)};
}

sandbox::AddressFields addressIn(const Json& json) {
  sandbox::requireKnownMembers(
      json, {keys::street, keys::city, keys::countryCode, keys::zip, keys::businessName});
  return sandbox::addressIn(json);
}

}  // namespace hlv::server
