#include "Services/ProviderRecords.h"

#include <memory>
#include <utility>

#include "Sandbox/Provider/CardInstruments.h"
#include "Services/Http/Refused.h"
#include "Services/Wiped.h"

namespace hlv::services {
namespace {

std::string takeText(Json& card, const char* key) {
  auto text = textIn(card, key).value_or("");
  if (const auto found = card.find(key); found != card.end() && found->is_string()) {
    wipe(found->get_ref<std::string&>());
  }
  return text;
}

}  // namespace

Json jsonOf(const NullableList<PLVCreditCardPaymentInstrument>& instruments) {
  if (!instruments) return nullptr;
  auto array = Json::array();
  for (const auto& instrument : *instruments) {
    const auto listed = std::dynamic_pointer_cast<sandbox::ListedInstrument>(instrument);
    array.push_back({{"identifier", orNull(instrument->identifier())},
                     {"number", listed ? listed->row() : 0},
                     {"masked_number", orNull(instrument->pan())},
                     {"brand", orNull(instrument->cardBrand())},
                     {"expiry_month", orNull(instrument->expiryMonth())},
                     {"expiry_year", orNull(instrument->expiryYear())},
                     {"state", instrument->state()}});
  }
  return array;
}

Json newCardJson(const sandbox::EnteredCard& card) {
  return {{"number", orNull(card.pan())},
          {"expiry_month", orNull(card.expiryMonth())},
          {"expiry_year", orNull(card.expiryYear())},
          {"security_code", orNull(card.cvv())},
          {"card_holder", orNull(card.cardHolder())}};
}

NullableList<PLVCreditCardPaymentInstrument> instrumentsIn(const Json& json,
                                                           const std::string& useCase) {
  if (json.is_null()) return std::nullopt;
  List<PLVCreditCardPaymentInstrument> instruments;
  for (const auto& item : json.get_ref<const Json::array_t&>()) {
    sandbox::ProviderInstrument values{
        textOrMissing(item.at("identifier")),        item.at("brand").get<std::string>(),
        item.at("masked_number").get<std::string>(), useCase,
        item.at("expiry_month").get<std::string>(),  item.at("expiry_year").get<std::string>(),
        item.at("state").get<std::uint64_t>()};
    instruments.push_back(std::make_shared<sandbox::ListedInstrument>(
        item.at("number").get<std::int64_t>(), std::move(values)));
  }
  return instruments;
}

sandbox::CardFields takeNewCard(Json& request) {
  objectIn(request, "credit_card");
  auto& card = request["credit_card"];
  sandbox::CardFields fields;
  fields.pan = takeText(card, "number");
  fields.cvv = takeText(card, "security_code");
  fields.expiryMonth = takeText(card, "expiry_month");
  fields.expiryYear = takeText(card, "expiry_year");
  fields.cardHolder = takeText(card, "card_holder");
  requireKnownMembers(card,
                      {"number", "security_code", "expiry_month", "expiry_year", "card_holder"});
  return fields;
}

}  // namespace hlv::services
