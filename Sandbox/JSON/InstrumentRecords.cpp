#include "Sandbox/JSON/InstrumentRecords.h"

#include "Values/Wiped.h"

namespace hlv::sandbox {
namespace {

ProviderInstrument valuesIn(const Json& json, std::string useCase) {
  return {textIn(json, "identifier"),
          requiredTextIn(json, "brand"),
          requiredTextIn(json, "masked_number"),
          std::move(useCase),
          requiredTextIn(json, "expiry_month"),
          requiredTextIn(json, "expiry_year"),
          static_cast<std::uint64_t>(requiredIntegerIn(json, "state"))};
}

/// Leaves no copy of the text but the one in the JSON.
Json taken(NullableString text) {
  auto json = orNull(text);
  if (text) wipe(*text);
  return json;
}

std::string takeText(Json& card, const char* key) {
  auto text = textIn(card, key).value_or("");
  if (const auto found = card.find(key); found != card.end() && found->is_string()) {
    wipe(found->get_ref<std::string&>());
  }
  return text;
}

}  // namespace

Json jsonOf(const NumberedInstrument& listed) {
  const auto& instrument = listed.values;
  return {{"identifier", orNull(instrument.identifier)},
          {"number", listed.number},
          {"masked_number", instrument.maskedPan},
          {"brand", instrument.brand},
          {"expiry_month", instrument.expiryMonth},
          {"expiry_year", instrument.expiryYear},
          {"state", instrument.state}};
}

NumberedInstrument listedInstrumentIn(const Json& json, const std::string& useCase) {
  return {requiredIntegerIn(json, "number"), valuesIn(json, useCase)};
}

Json jsonOf(const ProviderInstrument& instrument) {
  return {{"identifier", orNull(instrument.identifier)},
          {"brand", instrument.brand},
          {"masked_number", instrument.maskedPan},
          {"use_case", instrument.useCase},
          {"expiry_month", instrument.expiryMonth},
          {"expiry_year", instrument.expiryYear},
          {"state", instrument.state}};
}

ProviderInstrument instrumentIn(const Json& json) {
  return valuesIn(json, requiredTextIn(json, "use_case"));
}

Json newCardJson(const EnteredCard& card) {
  return {{"number", taken(card.pan())},
          {"expiry_month", taken(card.expiryMonth())},
          {"expiry_year", taken(card.expiryYear())},
          {"security_code", taken(card.cvv())},
          {"card_holder", taken(card.cardHolder())}};
}

CardFields takeNewCard(Json& request) {
  objectIn(request, "credit_card");
  auto& card = request["credit_card"];
  CardFields fields;
  fields.pan = takeText(card, "number");
  fields.cvv = takeText(card, "security_code");
  fields.expiryMonth = takeText(card, "expiry_month");
  fields.expiryYear = takeText(card, "expiry_year");
  fields.cardHolder = takeText(card, "card_holder");
  requireKnownMembers(card,
                      {"number", "security_code", "expiry_month", "expiry_year", "card_holder"});
  return fields;
}

}  // namespace hlv::sandbox
