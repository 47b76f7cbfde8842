#include "Sandbox/JSON/CardRecords.h"

#include "Sandbox/Records/AddressKeys.h"

namespace hlv::sandbox {

namespace keys = addressKeys;

Json jsonOf(const BackendCard& card) {
  const auto& address = card.billingAddress;
  return {{"id", card.halvoID},
          {"brand", card.brand},
          {"last_four_digits", card.lastFourDigits},
          {"use_case", card.useCase},
          {"external_identifier", orNull(card.externalIdentifier)},
          {"card_holder", card.cardHolder},
          {"expiry_month", card.expiryMonth},
          {"expiry_year", card.expiryYear},
          {"billing_address",
           {{keys::street, orNull(address.street)},
            {keys::city, orNull(address.city)},
            {keys::countryCode, orNull(address.countryCode)},
            {keys::zip, orNull(address.zip)},
            {keys::businessName, orNull(address.businessName)}}}};
}

Json jsonOf(const BackendGuest& guest) {
  Json json = {{"email", guest.email},
               {"revision", guest.revision},
               {"payment_token", orNull(guest.paymentToken)}};
  if (guest.cards) json["credit_cards"] = listOf(*guest.cards);
  return json;
}

AddressFields addressIn(const Json& json) {
  return {textIn(json, keys::street), textIn(json, keys::city), textIn(json, keys::countryCode),
          textIn(json, keys::zip), textIn(json, keys::businessName)};
}

BackendCard cardIn(const Json& json) {
  return {requiredTextIn(json, "id"),
          requiredTextIn(json, "brand"),
          requiredTextIn(json, "last_four_digits"),
          requiredTextIn(json, "use_case"),
          textIn(json, "external_identifier"),
          requiredTextIn(json, "card_holder"),
          requiredTextIn(json, "expiry_month"),
          requiredTextIn(json, "expiry_year"),
          addressIn(objectIn(json, "billing_address"))};
}

BackendGuest guestIn(const Json& json) {
  BackendGuest guest{requiredTextIn(json, "email"),
                     requiredIntegerIn(json, "revision"),
                     textIn(json, "payment_token"),
                     {}};
  if (json.contains("credit_cards")) guest.cards = recordsIn(listIn(json, "credit_cards"), cardIn);
  return guest;
}

}  // namespace hlv::sandbox
