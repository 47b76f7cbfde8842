#include "Sandbox/Provider/Provider.h"

#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Cards/SpecialCards.h"
#include "Sandbox/ErrorCodes.h"
#include "Sandbox/Logging/MaskedText.h"
#include "Sandbox/SandboxError.h"
#include "Sandbox/Store/Identifiers.h"

namespace hlv::sandbox {
namespace {

constexpr std::uint64_t unusableState = 2;

[[noreturn]] void refuse(ProviderErrorCode code, const std::string& sentence) {
  throw Refusal{SandboxError::make(providerErrorDomain, code, sentence)};
}

std::string requireUseCase(const NullableString& useCase) {
  if (!useCase || !isUseCase(*useCase)) {
    refuse(ProviderErrorCode::unknownUseCase, unknownUseCase().sentence);
  }
  return *useCase;
}

std::string requireToken(Database& database, const NullableString& token) {
  auto row = database.query("SELECT token FROM provider_users WHERE token = ?", token);
  if (!token || !row.next()) {
    refuse(ProviderErrorCode::unknownToken, "The provider does not know this user.");
  }
  return *token;
}

/// What will be stored of a card, and how the answer differs from the usual one.
struct Acceptable {
  ProviderInstrument values;
  std::string cardHolder;
  std::string variation;
};

/// A fault stands above what the card's number brings about.
Acceptable accept(const Provider::Instrument& instrument, const NullableString& useCase,
                  const std::string& variation) {
  const auto useCaseName = requireUseCase(useCase);
  const auto shown = std::dynamic_pointer_cast<NewInstrument>(instrument);
  if (!shown) refuse(ProviderErrorCode::malformedCard, "The request holds no new card.");
  const auto& card = shown->card();
  ErrorPtr problem;
  if (!card.isValid(&problem)) {
    refuse(ProviderErrorCode::malformedCard, problem->localizedDescription().value_or(""));
  }
  Acceptable accepted;
  accepted.variation = variation.empty() ? providerVariation(*card.pan()) : variation;
  if (accepted.variation == "declined") {
    refuse(ProviderErrorCode::cardDeclined, "The card was declined.");
  }
  // People type card numbers where a name belongs.
  accepted.cardHolder = maskedText(*card.cardHolder());
  accepted.values = {std::nullopt,
                     *shown->cardBrand(),
                     *shown->pan(),
                     useCaseName,
                     *card.expiryMonth(),
                     *card.expiryYear(),
                     accepted.variation == "other-state" ? unusableState : 0};
  return accepted;
}

void store(Database& database, const std::string& token, const Acceptable& card) {
  NullableString identifier = makeIdentifier(database, "ins");
  if (card.variation == "no-identifier") identifier.reset();
  database.run(
      "INSERT INTO provider_instruments (token, use_case, identifier, brand, masked_pan, "
      "card_holder, expiry_month, expiry_year, state) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
      token, card.values.useCase, identifier, card.values.brand, card.values.maskedPan,
      card.cardHolder, card.values.expiryMonth, card.values.expiryYear,
      static_cast<std::int64_t>(card.values.state));
}

NullableString tokenOf(Database& database, const std::string& email) {
  auto row = database.query("SELECT token FROM provider_users WHERE email = ?", email);
  return row.next() ? row.textOrNull(0) : std::nullopt;
}

std::string tokenFor(Database& database, const std::string& email) {
  if (const auto token = tokenOf(database, email)) return *token;
  auto token = makeIdentifier(database, "tok");
  database.run("INSERT INTO provider_users (token, email) VALUES (?, ?)", token, email);
  return token;
}

/// What is stored under a token, for one use case or for all, each with its row.
std::vector<std::pair<std::int64_t, ProviderInstrument>> readInstruments(
    Database& database, const std::string& token, const NullableString& useCase) {
  std::vector<std::pair<std::int64_t, ProviderInstrument>> instruments;
  auto row = database.query(
      "SELECT number, identifier, brand, masked_pan, use_case, expiry_month, expiry_year, state "
      "FROM provider_instruments WHERE token = ? AND (? IS NULL OR use_case = ?) ORDER BY number",
      token, useCase, useCase);
  while (row.next()) {
    instruments.emplace_back(
        row.integer(0),
        ProviderInstrument{row.textOrNull(1), row.text(2), row.text(3), row.text(4), row.text(5),
                           row.text(6), static_cast<std::uint64_t>(row.integer(7))});
  }
  return instruments;
}

}  // namespace

Provider::TokenAnswer Provider::createUserToken(const NullableString& email,
                                                const Instrument& instrument,
                                                const NullableString& useCase,
                                                const std::string& variation) {
  requireRegistration();
  if (length(email) == 0) {
    refuse(ProviderErrorCode::invalidRequest, "The request names no user.");
  }
  const auto card = accept(instrument, useCase, variation);
  auto token = store_->write([&](Database& database) {
    auto owner = tokenFor(database, *email);
    store(database, owner, card);
    return owner;
  });
  if (card.variation == "no-token") return {};
  return {std::move(token), nullptr};
}

Provider::ErrorAnswer Provider::addInstrument(const Instrument& instrument,
                                              const NullableString& token,
                                              const NullableString& useCase,
                                              const std::string& variation) {
  requireRegistration();
  const auto card = accept(instrument, useCase, variation);
  store_->write([&](Database& database) { store(database, requireToken(database, token), card); });
  return {};
}

Provider::ListAnswer Provider::listInstruments(const NullableString& token,
                                               const NullableString& useCase,
                                               const std::string& variation) const {
  requireRegistration();
  const auto name = requireUseCase(useCase);
  auto stored = store_->read([&](Database& database) {
    return readInstruments(database, requireToken(database, token), name);
  });
  if (variation == "no-list") return {};
  List<PLVCreditCardPaymentInstrument> instruments;
  for (auto& [row, values] : stored) {
    if (variation == "no-identifier") values.identifier.reset();
    if (variation == "other-state") values.state = unusableState;
    instruments.push_back(std::make_shared<ListedInstrument>(row, std::move(values)));
  }
  return {std::move(instruments), nullptr};
}

Provider::ErrorAnswer Provider::removeInstrument(const Instrument& instrument,
                                                 const NullableString& useCase,
                                                 const NullableString& token) {
  requireRegistration();
  const auto name = requireUseCase(useCase);
  if (!instrument) refuse(ProviderErrorCode::invalidRequest, "The request names no instrument.");
  const auto listed = std::dynamic_pointer_cast<ListedInstrument>(instrument);
  store_->write([&](Database& database) {
    database.run(
        "DELETE FROM provider_instruments WHERE token = ? AND use_case = ? "
        "AND (number = ? OR identifier = ?)",
        requireToken(database, token), name,
        listed ? std::optional<std::int64_t>(listed->row()) : std::nullopt,
        instrument->identifier());
    if (database.changes() == 0) {
      refuse(ProviderErrorCode::instrumentGone, "The instrument is not stored any more.");
    }
  });
  return {};
}

std::vector<ProviderInstrument> Provider::instrumentsOf(const std::string& email) const {
  return store_->read([&](Database& database) {
    std::vector<ProviderInstrument> instruments;
    if (const auto token = tokenOf(database, email)) {
      for (auto& [row, values] : readInstruments(database, *token, std::nullopt)) {
        instruments.push_back(std::move(values));
      }
    }
    return instruments;
  });
}

void Provider::plant(const std::string& email, const std::shared_ptr<EnteredCard>& card) {
  const auto accepted =
      accept(std::make_shared<NewInstrument>(card), card->instrumentUseCaseString(), "");
  store_->write([&](Database& database) {
    const auto token = tokenOf(database, email);
    if (!token) {
      refuse(ProviderErrorCode::unknownToken,
             "The provider does not know the guest yet; add a first card.");
    }
    store(database, *token, accepted);
  });
}

bool Provider::lose(const std::string& identifier) {
  return store_->write([&](Database& database) {
    database.run("DELETE FROM provider_instruments WHERE identifier = ?", identifier);
    return database.changes() > 0;
  });
}

bool Provider::storeAgain(const std::string& identifier) {
  return store_->write([&](Database& database) {
    const auto another = makeIdentifier(database, "ins");
    database.run(
        "INSERT INTO provider_instruments (token, use_case, identifier, brand, masked_pan, "
        "card_holder, expiry_month, expiry_year, state) SELECT token, use_case, ?, brand, "
        "masked_pan, card_holder, expiry_month, expiry_year, state FROM provider_instruments "
        "WHERE identifier = ?",
        another, identifier);
    return database.changes() > 0;
  });
}

void Provider::requireRegistration() const {
  if (!isRegistered_) {
    refuse(ProviderErrorCode::notRegistered, "The app is not registered with the provider.");
  }
}

}  // namespace hlv::sandbox
