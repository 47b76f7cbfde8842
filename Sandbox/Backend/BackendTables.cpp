#include "Sandbox/Backend/BackendTables.h"

#include <utility>

#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {
namespace {

constexpr const char* revisionSetting = "revision";
constexpr std::int64_t sessionsKept = 10'000;

constexpr const char* cardColumns =
    "SELECT halvo_id, brand, last_four_digits, use_case, external_identifier, card_holder, "
    "expiry_month, expiry_year, street, city, country_code, zip, business_name "
    "FROM backend_cards ";

BackendCard cardIn(const Query& row) {
  return {row.text(0),
          row.text(1),
          row.text(2),
          row.text(3),
          row.textOrNull(4),
          row.text(5),
          row.text(6),
          row.text(7),
          AddressFields{row.textOrNull(8), row.textOrNull(9), row.textOrNull(10),
                        row.textOrNull(11), row.textOrNull(12)}};
}

}  // namespace

bool hasGuest(Database& database, const std::string& email) {
  return database.query("SELECT 1 FROM backend_guests WHERE email = ?", email).next();
}

void insertGuest(Database& database, const std::string& email) {
  database.run("INSERT OR IGNORE INTO backend_guests (email) VALUES (?)", email);
}

std::optional<std::string> readOnlyGuest(Database& database) {
  auto row = database.query("SELECT email FROM backend_guests LIMIT 2");
  if (!row.next()) return std::nullopt;
  auto email = row.text(0);
  return row.next() ? std::nullopt : std::optional(std::move(email));
}

std::optional<std::string> readGuestToken(Database& database, const std::string& email) {
  return database.text("SELECT payment_token FROM backend_guests WHERE email = ?", email);
}

std::vector<BackendCard> readCards(Database& database, const std::string& email) {
  return database.query(std::string(cardColumns) + "WHERE guest = ? ORDER BY number", email)
      .all(cardIn);
}

std::optional<BackendCard> readCard(Database& database, const std::string& email,
                                    const std::string& halvoID) {
  return database
      .query(std::string(cardColumns) + "WHERE guest = ? AND halvo_id = ?", email, halvoID)
      .one(cardIn);
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

void raiseRevision(Database& database) { raiseRevisionAbove(database, readRevision(database)); }

void raiseRevisionAbove(Database& database, std::int64_t revision) {
  writeSetting(database, revisionSetting, std::to_string(revision + 1));
}

std::string insertSession(Database& database, const std::string& email) {
  auto session = makeIdentifier(database, "ses");
  database.run("INSERT INTO backend_sessions (token, guest) VALUES (?, ?)", session, email);
  database.run("DELETE FROM backend_sessions WHERE number <= ?", database.lastRow() - sessionsKept);
  return session;
}

std::optional<std::string> readSessionGuest(Database& database, const std::string& session) {
  return database.text("SELECT guest FROM backend_sessions WHERE token = ?", session);
}

bool removeSession(Database& database, const std::string& session) {
  database.run("DELETE FROM backend_sessions WHERE token = ?", session);
  return database.changes() > 0;
}

}  // namespace hlv::sandbox
