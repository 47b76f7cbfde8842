#include "Services/Console/ConsoleRecords.h"

#include "Sandbox/Backend/AddressKeys.h"
#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Pairs.h"
#include "Sandbox/TestCards.h"
#include "Services/BackendRecords.h"
#include "Services/Http/ErrorBody.h"
#include "Services/TesterRecords.h"

namespace hlv::services {
namespace {

namespace keys = sandbox::addressKeys;

}  // namespace

Json jsonOf(const std::vector<sandbox::Journal::Operation>& story) {
  auto operations = Json::array();
  for (const auto& [number, name, events] : story) {
    auto told = Json::array();
    for (const auto& event : events) {
      told.push_back({{"number", event.number},
                      {"from", event.from},
                      {"to", event.to},
                      {"what", event.what},
                      {"result", event.result},
                      {"thread", event.thread}});
    }
    operations.push_back({{"number", number}, {"name", name}, {"events", std::move(told)}});
  }
  return operations;
}

Json truthOf(sandbox::Sandbox& sandbox) {
  const auto guest = sandbox.host()->currentGuest();
  auto pairs = Json::array();
  for (const auto& [card, instrument] :
       sandbox::pairsOf(sandbox.backendCards(), sandbox.providerInstruments())) {
    pairs.push_back({{"card", card ? jsonOf(std::make_shared<sandbox::StoredCard>(*card)) : Json()},
                     {"instrument", instrument ? jsonOf(*instrument) : Json()}});
  }
  return {{"guest", guest ? Json{{"email", orNull(guest->email())},
                                 {"has_token", guest->paylevenToken().has_value()}}
                          : Json()},
          {"network", sandbox.isReachable()},
          {"pairs", std::move(pairs)},
          {"faults", jsonOf(sandbox.faults().armed())},
          {"oldest_operation", sandbox.journal().oldest()}};
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
  return {{"test_cards", std::move(cards)},
          {"use_cases", {"default", "private", "business"}},
          {"scenes", sandbox::Sandbox::scenes()},
          {"operations", sandbox::Faults::operations()},
          {"kinds", sandbox::Faults::kinds()}};
}

HttpAnswer answerOf(const App::Outcome& outcome) {
  if (outcome.refusal) return errorAnswer(*outcome.refusal);
  const auto& error = outcome.error;
  Json body = {{"operation", outcome.operation},
               {"answers", outcome.answers},
               {"credit_card", jsonOf(outcome.card)},
               {"failure", nullptr}};
  if (error) {
    body["failure"] = {{"domain", error->domain()},
                       {"number", error->code()},
                       {"message", error->localizedDescription().value_or("")}};
  }
  return {200, std::move(body)};
}

sandbox::AddressFields addressIn(const Json& json) {
  requireKnownMembers(json,
                      {keys::street, keys::city, keys::countryCode, keys::zip, keys::businessName});
  return {textIn(json, keys::street), textIn(json, keys::city), textIn(json, keys::countryCode),
          textIn(json, keys::zip), textIn(json, keys::businessName)};
}

}  // namespace hlv::services
