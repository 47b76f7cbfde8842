#include "Sandbox/Backend/Backend.h"

#include <algorithm>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Sandbox/Backend/AddressKeys.h"
#include "Sandbox/Backend/BackendTables.h"
#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Cards/SpecialCards.h"
#include "Sandbox/ErrorCodes.h"
#include "Sandbox/Logging/MaskedText.h"
#include "Sandbox/SandboxError.h"
#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/Settings.h"

namespace hlv::sandbox {
namespace {

constexpr const char* signedInSetting = "signed-in";

[[noreturn]] void refuse(BackendErrorCode code, const std::string& sentence) {
  throw Refusal{SandboxError::make(backendErrorDomain, code, sentence)};
}

std::string requireSignedIn(Database& database) {
  auto email = readSetting(database, signedInSetting);
  if (!email) refuse(BackendErrorCode::notSignedIn, "Nobody is signed in.");
  return *email;
}

/// The backend serves the guest who is signed in, and no other.
std::string requireGuest(Database& database, const NullableString& guest) {
  auto email = requireSignedIn(database);
  if (!guest) refuse(BackendErrorCode::invalidRequest, "The request names no guest.");
  if (*guest != email) {
    refuse(BackendErrorCode::foreignGuest, "The guest of the request is not the one signed in.");
  }
  return email;
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

void Backend::signIn(const std::string& email) {
  store_->write([&](Database& database) {
    database.run("INSERT OR IGNORE INTO backend_guests (email) VALUES (?)", email);
    writeSetting(database, signedInSetting, email);
  });
}

void Backend::signOut() {
  store_->write([](Database& database) { writeSetting(database, signedInSetting, std::nullopt); });
}

std::optional<std::string> Backend::signedInEmail() const {
  return store_->readOrNothing(
      [](Database& database) { return readSetting(database, signedInSetting); });
}

std::shared_ptr<HLVSDKGuest> Backend::guest(const std::string& email) {
  const std::lock_guard lock(mutex_);
  if (auto known = guests_[email].lock()) return known;
  std::erase_if(guests_, [](const auto& guest) { return guest.second.expired(); });
  auto guest = std::make_shared<Guest>(email, store_);
  guests_[email] = guest;
  return guest;
}

std::vector<BackendCard> Backend::cardsOf(const std::string& email) const {
  return store_->read([&](Database& database) { return readCards(database, email); });
}

template <class Change>
auto Backend::write(Change change) {
  return store_->write([&](Database& database) {
    raiseRevision(database);
    return change(database);
  });
}

bool Backend::loseToken(const std::string& email) {
  return write([&](Database& database) {
    database.run(
        "UPDATE backend_guests SET payment_token = NULL "
        "WHERE email = ? AND payment_token IS NOT NULL",
        email);
    return database.changes() > 0;
  });
}

Backend::GuestAnswer Backend::updateGuest(const NullableString& token) {
  const auto email = write([&](Database& database) {
    auto signedIn = requireSignedIn(database);
    if (length(token) == 0) {
      refuse(BackendErrorCode::invalidRequest, "The request changes nothing of the guest.");
    }
    database.run("UPDATE backend_guests SET payment_token = ? WHERE email = ?", token, signedIn);
    return signedIn;
  });
  return {guest(email), nullptr};
}

Backend::CardAnswer Backend::addCard(const NullableString& requestGuest, const Dictionary& body) {
  auto card = readBody(body);
  const auto email = write([&](Database& database) {
    auto owner = requireGuest(database, requestGuest);
    if (isRefusedByBackend(card.brand, card.lastFourDigits)) {
      refuse(BackendErrorCode::cardRefused, "The card is not accepted.");
    }
    card.halvoID = makeIdentifier(database, "crd");
    insertCard(database, owner, card);
    return owner;
  });
  return answerWithCard(email, card.halvoID);
}

Backend::GuestAnswer Backend::deleteCard(const NullableString& halvoID,
                                         const NullableString& requestGuest) {
  const auto email = write([&](Database& database) {
    auto owner = requireGuest(database, requestGuest);
    if (!halvoID || !removeCard(database, owner, *halvoID)) refuseUnknownCard();
    return owner;
  });
  return {guest(email), nullptr};
}

Backend::CardAnswer Backend::updateCard(const NullableString& halvoID, const Dictionary& address,
                                        const NullableString& requestGuest) {
  const auto email = write([&](Database& database) {
    auto owner = requireGuest(database, requestGuest);
    if (!halvoID || !updateAddress(database, owner, *halvoID, readAddress(address))) {
      refuseUnknownCard();
    }
    return owner;
  });
  return answerWithCard(email, *halvoID);
}

Backend::CardsAnswer Backend::fetchCards(const NullableString& requestGuest,
                                         const std::string& variation) {
  const auto email =
      store_->read([&](Database& database) { return requireGuest(database, requestGuest); });
  if (variation == "no-list") return {};
  return {guest(email)->creditCards(), nullptr};
}

Backend::CardAnswer Backend::answerWithCard(const std::string& email, const std::string& halvoID) {
  const auto owner = guest(email);
  const auto cards = owner->creditCards().value_or(List<HLVSDKCreditCard>());
  const auto found = std::find_if(cards.begin(), cards.end(), [&](const auto& card) {
    return isEqualToString(card->halvoID(), halvoID);
  });
  return {owner, found == cards.end() ? nullptr : *found, nullptr};
}

}  // namespace hlv::sandbox
