#include "Sandbox/Backend/Backend.h"

#include <utility>

#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Cards/SpecialCards.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Sandbox/Records/AddressKeys.h"
#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox::backend {
namespace {

constexpr const char* signedInSetting = "signed-in";
constexpr const char* sessionIsOver = "The session has ended, or never was.";

[[noreturn]] void refuse(BackendErrorCode code, const std::string& sentence) {
  throw Refusal{SandboxError::make(backendErrorDomain, code, sentence)};
}

/// Masked, since people type card numbers where a name or a street belongs.
NullableString textIn(const Dictionary& dictionary, const std::string& key) {
  const auto* text = valueForKey(dictionary, key).string();
  return text ? NullableString(maskedText(*text)) : std::nullopt;
}

std::string requireText(const Dictionary& dictionary, const std::string& key) {
  auto text = textIn(dictionary, key);
  if (length(text) == 0) {
    refuse(BackendErrorCode::invalidRequest, "The card in the request has no " + key + ".");
  }
  return *text;
}

AddressFields readAddress(const Dictionary& address) {
  return {textIn(address, addressKeys::street), textIn(address, addressKeys::city),
          textIn(address, addressKeys::countryCode), textIn(address, addressKeys::zip),
          textIn(address, addressKeys::businessName)};
}

bool isFourDigits(const std::string& text) {
  return text.size() == 4 && text.find_first_not_of("0123456789") == std::string::npos;
}

/// Takes the card out of a request's body; it has no identifier of the backend yet.
BackendCard readBody(const Dictionary& body) {
  const auto* fields = valueForKey(body, "credit_card").dictionary();
  if (!fields) refuse(BackendErrorCode::invalidRequest, "The request holds no card.");
  if (valueForKey(body, "provider").integerValue() != 0) {
    refuse(BackendErrorCode::invalidRequest, "The request names an unknown payment provider.");
  }
  BackendCard card;
  card.brand = requireText(*fields, "brand");
  card.lastFourDigits = requireText(*fields, "last_four_digits");
  card.useCase = requireText(*fields, "use_case");
  card.externalIdentifier = requireText(*fields, "external_identifier");
  card.cardHolder = requireText(*fields, "card_holder");
  card.expiryMonth = requireText(*fields, "expiry_month");
  card.expiryYear = requireText(*fields, "expiry_year");
  if (!isFourDigits(card.lastFourDigits) || !isUseCase(card.useCase)) {
    refuse(BackendErrorCode::invalidRequest, "The card in the request cannot be read.");
  }
  if (const auto* address = valueForKey(*fields, "billing_address").dictionary()) {
    card.billingAddress = readAddress(*address);
  }
  return card;
}

[[noreturn]] void refuseUnknownCard() {
  refuse(BackendErrorCode::unknownCard, "The guest has no card with this ID.");
}

}  // namespace

Result<> checkAddress(const std::string& email) {
  constexpr std::size_t longest = 254;
  const auto at = email.find('@');
  const bool isAddress = at != std::string::npos && at > 0 && at + 1 < email.size() &&
                         email.size() <= longest &&
                         email.find_first_of(" \t\r\n") == std::string::npos;
  if (!isAddress) return Result<>::failure("A guest signs in with an e-mail address.");
  if (!holdsCardNumber(email)) return {};
  return Result<>::failure("An address may not hold what looks like a card number.");
}

void signIn(Database& database, const std::string& email) {
  insertGuest(database, email);
  writeSetting(database, signedInSetting, email);
}

void signOut(Database& database) { writeSetting(database, signedInSetting, std::nullopt); }

std::optional<std::string> signedInEmail(Database& database) {
  return readSetting(database, signedInSetting);
}

std::string openSession(Database& database, const std::string& email) {
  const auto check = checkAddress(email);
  if (!check) refuse(BackendErrorCode::invalidRequest, check.problem());
  insertGuest(database, email);
  return insertSession(database, email);
}

void endSession(Database& database, const std::string& session) {
  if (!removeSession(database, session)) {
    refuse(BackendErrorCode::notSignedIn, sessionIsOver);
  }
}

std::string ownerOf(Database& database, const Caller& caller) {
  if (caller.kind == Caller::Kind::anyone) {
    if (caller.guest && hasGuest(database, *caller.guest)) return *caller.guest;
    refuse(BackendErrorCode::unknownGuest, "There is no guest of this address.");
  }
  const bool isApp = caller.kind == Caller::Kind::app;
  const auto email = isApp ? signedInEmail(database) : readSessionGuest(database, caller.session);
  if (!email) {
    refuse(BackendErrorCode::notSignedIn, isApp ? "Nobody is signed in." : sessionIsOver);
  }
  if (isApp && !caller.guest) {
    refuse(BackendErrorCode::invalidRequest, "The request names no guest.");
  }
  if (caller.guest != email) {
    refuse(BackendErrorCode::foreignGuest, "The guest of the request is not the one signed in.");
  }
  return *email;
}

BackendGuest readGuest(Database& database, const std::string& email, bool withCards) {
  BackendGuest guest{email, readRevision(database), readGuestToken(database, email), std::nullopt};
  if (withCards) guest.cards = readCards(database, email);
  return guest;
}

std::string updateGuest(Database& database, const Caller& caller, const NullableString& token) {
  auto owner = ownerOf(database, caller);
  if (length(token) == 0) {
    refuse(BackendErrorCode::invalidRequest, "The request changes nothing of the guest.");
  }
  database.run("UPDATE backend_guests SET payment_token = ? WHERE email = ?", token, owner);
  raiseRevision(database);
  return owner;
}

OwnedCard addCard(Database& database, const Caller& caller, const Dictionary& body) {
  auto card = readBody(body);
  auto owner = ownerOf(database, caller);
  if (isRefusedByBackend(card.brand, card.lastFourDigits)) {
    refuse(BackendErrorCode::cardRefused, "The card is not accepted.");
  }
  card.halvoID = makeIdentifier(database, "crd");
  insertCard(database, owner, card);
  raiseRevision(database);
  return {std::move(owner), std::move(card)};
}

std::string deleteCard(Database& database, const Caller& caller, const NullableString& halvoID) {
  auto owner = ownerOf(database, caller);
  if (!halvoID || !removeCard(database, owner, *halvoID)) refuseUnknownCard();
  raiseRevision(database);
  return owner;
}

OwnedCard updateCard(Database& database, const Caller& caller, const NullableString& halvoID,
                     const Dictionary& address) {
  auto owner = ownerOf(database, caller);
  if (!halvoID || !updateAddress(database, owner, *halvoID, readAddress(address))) {
    refuseUnknownCard();
  }
  raiseRevision(database);
  auto card = readCard(database, owner, *halvoID);
  return {std::move(owner), *std::move(card)};
}

std::optional<std::vector<BackendCard>> fetchCards(Database& database, const Caller& caller,
                                                   std::optional<FaultKind> fault) {
  const auto owner = ownerOf(database, caller);
  if (fault == FaultKind::noList) return std::nullopt;
  return readCards(database, owner);
}

bool loseToken(Database& database, const std::string& email) {
  database.run(
      "UPDATE backend_guests SET payment_token = NULL "
      "WHERE email = ? AND payment_token IS NOT NULL",
      email);
  if (database.changes() == 0) return false;
  raiseRevision(database);
  return true;
}

}  // namespace hlv::sandbox::backend
