#include "Sandbox/Backend/BackendTables.h"

#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {
namespace {

constexpr const char* revisionSetting = "revision";

}  // namespace

std::optional<std::string> readGuestToken(Database& database, const std::string& email) {
  auto row = database.query("SELECT payment_token FROM backend_guests WHERE email = ?", email);
  return row.next() ? row.textOrNull(0) : std::nullopt;
}

std::vector<BackendCard> readCards(Database& database, const std::string& email) {
  std::vector<BackendCard> cards;
  auto row = database.query(
      "SELECT halvo_id, brand, last_four_digits, use_case, external_identifier, card_holder, "
      "expiry_month, expiry_year, street, city, country_code, zip, business_name "
      "FROM backend_cards WHERE guest = ? ORDER BY number",
      email);
  while (row.next()) {
    cards.push_back({row.text(0), row.text(1), row.text(2), row.text(3), row.textOrNull(4),
                     row.text(5), row.text(6), row.text(7),
                     AddressFields{row.textOrNull(8), row.textOrNull(9), row.textOrNull(10),
                                   row.textOrNull(11), row.textOrNull(12)}});
  }
  return cards;
}

void insertCard(Database& database, const std::string& email, const BackendCard& card) {
  const auto& address = card.billingAddress;
  database.run(
      "INSERT INTO backend_cards (guest, halvo_id, brand, last_four_digits, use_case, "
      "external_identifier, card_holder, expiry_month, expiry_year, street, city, country_code, "
      "zip, business_name) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
      email, card.halvoID, card.brand, card.lastFourDigits, card.useCase, card.externalIdentifier,
      card.cardHolder, card.expiryMonth, card.expiryYear, address.street, address.city,
      address.countryCode, address.zip, address.businessName);
}

bool updateAddress(Database& database, const std::string& email, const std::string& halvoID,
                   const AddressFields& address) {
  database.run(
      "UPDATE backend_cards SET street = coalesce(?, street), city = coalesce(?, city), "
      "country_code = coalesce(?, country_code), zip = coalesce(?, zip), "
      "business_name = coalesce(?, business_name) WHERE guest = ? AND halvo_id = ?",
      address.street, address.city, address.countryCode, address.zip, address.businessName, email,
      halvoID);
  return database.changes() > 0;
}

bool removeCard(Database& database, const std::string& email, const std::string& halvoID) {
  database.run("DELETE FROM backend_cards WHERE guest = ? AND halvo_id = ?", email, halvoID);
  return database.changes() > 0;
}

std::int64_t readRevision(Database& database) {
  const auto text = readSetting(database, revisionSetting);
  return text ? std::stoll(*text) : 0;
}

void raiseRevision(Database& database) {
  writeSetting(database, revisionSetting, std::to_string(readRevision(database) + 1));
}

}  // namespace hlv::sandbox
