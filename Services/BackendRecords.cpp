#include "Services/BackendRecords.h"

#include "Sandbox/Backend/AddressKeys.h"
#include "Sandbox/Backend/Guest.h"

namespace hlv::services {
namespace {

namespace keys = sandbox::addressKeys;

}  // namespace

Json jsonOf(const std::shared_ptr<HLVSDKCreditCard>& card) {
  const auto stored = std::dynamic_pointer_cast<sandbox::StoredCard>(card);
  if (!stored) return nullptr;
  const auto& values = stored->values();
  const auto& address = values.billingAddress;
  return {{"id", values.halvoID},
          {"brand", values.brand},
          {"last_four_digits", values.lastFourDigits},
          {"use_case", values.useCase},
          {"external_identifier", orNull(values.externalIdentifier)},
          {"card_holder", values.cardHolder},
          {"expiry_month", values.expiryMonth},
          {"expiry_year", values.expiryYear},
          {"billing_address",
           {{keys::street, orNull(address.street)},
            {keys::city, orNull(address.city)},
            {keys::countryCode, orNull(address.countryCode)},
            {keys::zip, orNull(address.zip)},
            {keys::businessName, orNull(address.businessName)}}}};
}

Json jsonOf(const NullableList<HLVSDKCreditCard>& cards) {
  if (!cards) return nullptr;
  auto array = Json::array();
  for (const auto& card : *cards) array.push_back(jsonOf(card));
  return array;
}

Json jsonOf(const std::shared_ptr<HLVSDKGuest>& guest) {
  const auto kept = std::dynamic_pointer_cast<sandbox::Guest>(guest);
  if (!kept) return nullptr;
  const auto revision = kept->revision();  // Before the rest, which may change meanwhile.
  return {{"email", orNull(guest->email())},
          {"revision", revision},
          {"payment_token", orNull(guest->paylevenToken())},
          {"credit_cards", jsonOf(guest->creditCards())}};
}

sandbox::BackendCard cardIn(const Json& json) {
  const auto& address = json.at("billing_address");
  return {json.at("id").get<std::string>(),
          json.at("brand").get<std::string>(),
          json.at("last_four_digits").get<std::string>(),
          json.at("use_case").get<std::string>(),
          textOrMissing(json.at("external_identifier")),
          json.at("card_holder").get<std::string>(),
          json.at("expiry_month").get<std::string>(),
          json.at("expiry_year").get<std::string>(),
          {textOrMissing(address.at(keys::street)), textOrMissing(address.at(keys::city)),
           textOrMissing(address.at(keys::countryCode)), textOrMissing(address.at(keys::zip)),
           textOrMissing(address.at(keys::businessName))}};
}

GuestRecord guestIn(const Json& json) {
  GuestRecord guest{json.at("email").get<std::string>(),
                    json.at("revision").get<std::int64_t>(),
                    textOrMissing(json.at("payment_token")),
                    {}};
  for (const auto& card : json.at("credit_cards")) guest.cards.push_back(cardIn(card));
  return guest;
}

List<HLVSDKCreditCard> objectsOf(const std::vector<sandbox::BackendCard>& cards) {
  List<HLVSDKCreditCard> objects;
  for (const auto& card : cards) objects.push_back(std::make_shared<sandbox::StoredCard>(card));
  return objects;
}

NullableList<HLVSDKCreditCard> cardsIn(const Json& json) {
  if (json.is_null()) return std::nullopt;
  List<HLVSDKCreditCard> cards;
  for (const auto& card : json.get_ref<const Json::array_t&>()) {
    cards.push_back(std::make_shared<sandbox::StoredCard>(cardIn(card)));
  }
  return cards;
}

}  // namespace hlv::services
