#include "Sandbox/Provider/Provider.h"

#include <utility>

#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Cards/SpecialCards.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/Store/Clock.h"
#include "Sandbox/Store/Identifiers.h"

namespace hlv::sandbox::provider {
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
  if (!token || !database.query("SELECT 1 FROM provider_users WHERE token = ?", token).next()) {
    refuse(ProviderErrorCode::unknownToken, "The provider does not know this user.");
  }
  return *token;
}

/// What will be stored of a card, and how the reply differs from the usual one.
struct Acceptable {
  ProviderInstrument values;
  std::optional<FaultKind> variation;
};

/// What a test card brings about by its number. A fault stands above it.
std::optional<FaultKind> variationOf(const std::string& pan) {
  const auto name = providerVariation(pan);
  if (name == "declined") refuse(ProviderErrorCode::cardDeclined, "The card was declined.");
  const auto kind = faultKindNamed(name);
  return kind ? std::optional(*kind) : std::nullopt;
}

bool changesReply(FaultKind kind) { return kind >= FaultKind::noToken; }

Acceptable accept(Database& database, const EnteredCard* card, const NullableString& useCase,
                  std::optional<FaultKind> fault) {
  const auto useCaseName = requireUseCase(useCase);
  if (!card) refuse(ProviderErrorCode::malformedCard, "The request holds no new card.");
  if (const auto broken = card->brokenRule(sandboxMonth(database))) {
    refuse(ProviderErrorCode::malformedCard, broken->sentence);
  }
  Acceptable accepted;
  const auto& fields = card->fields();
  const bool isSet = fault && changesReply(*fault);
  accepted.variation = isSet ? fault : variationOf(fields.pan);
  accepted.values = {std::nullopt,
                     std::string(findCardBrand(fields.pan)->name),
                     maskedPan(fields.pan),
                     useCaseName,
                     fields.expiryMonth,
                     fields.expiryYear,
                     accepted.variation == FaultKind::otherState ? unusableState : 0};
  return accepted;
}

void store(Database& database, const std::string& token, const Acceptable& card) {
  NullableString identifier = makeIdentifier(database, "ins");
  if (card.variation == FaultKind::noIdentifier) identifier.reset();
  database.run(
      "INSERT INTO provider_instruments (token, use_case, identifier, brand, masked_pan, "
      "expiry_month, expiry_year, state) VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
      token, card.values.useCase, identifier, card.values.brand, card.values.maskedPan,
      card.values.expiryMonth, card.values.expiryYear,
      static_cast<std::int64_t>(card.values.state));
}

NullableString tokenOf(Database& database, const std::string& email) {
  return database.text("SELECT token FROM provider_users WHERE email = ?", email);
}

std::string tokenFor(Database& database, const std::string& email) {
  if (const auto token = tokenOf(database, email)) return *token;
  auto token = makeIdentifier(database, "tok");
  database.run("INSERT INTO provider_users (token, email) VALUES (?, ?)", token, email);
  return token;
}

/// What is stored under a token, for one use case or for all.
std::vector<NumberedInstrument> readInstruments(Database& database, const std::string& token,
                                                const NullableString& useCase) {
  auto row = database.query(
      "SELECT number, identifier, brand, masked_pan, use_case, expiry_month, expiry_year, state "
      "FROM provider_instruments WHERE token = ? AND (? IS NULL OR use_case = ?) ORDER BY number",
      token, useCase, useCase);
  return row.all([month = sandboxMonth(database)](const Query& stored) {
    const bool isUsable = !hasExpired(stored.text(5), stored.text(6), month);
    return NumberedInstrument{
        stored.integer(0),
        {stored.textOrNull(1), stored.text(2), stored.text(3), stored.text(4), stored.text(5),
         stored.text(6), isUsable ? static_cast<std::uint64_t>(stored.integer(7)) : unusableState}};
  });
}

}  // namespace

NullableString createUserToken(Database& database, const NullableString& email,
                               const EnteredCard* card, const NullableString& useCase,
                               std::optional<FaultKind> fault) {
  if (length(email) == 0) {
    refuse(ProviderErrorCode::invalidRequest, "The request names no user.");
  }
  const auto accepted = accept(database, card, useCase, fault);
  auto token = tokenFor(database, *email);
  store(database, token, accepted);
  if (accepted.variation == FaultKind::noToken) return std::nullopt;
  return token;
}

void addInstrument(Database& database, const EnteredCard* card, const NullableString& token,
                   const NullableString& useCase, std::optional<FaultKind> fault) {
  const auto accepted = accept(database, card, useCase, fault);
  store(database, requireToken(database, token), accepted);
}

std::optional<std::vector<NumberedInstrument>> listInstruments(Database& database,
                                                               const NullableString& token,
                                                               const NullableString& useCase,
                                                               std::optional<FaultKind> fault) {
  const auto name = requireUseCase(useCase);
  auto instruments = readInstruments(database, requireToken(database, token), name);
  if (fault == FaultKind::noList) return std::nullopt;
  for (auto& [number, values] : instruments) {
    if (fault == FaultKind::noIdentifier) values.identifier.reset();
    if (fault == FaultKind::otherState) values.state = unusableState;
  }
  return instruments;
}

void removeInstrument(Database& database, const std::optional<NamedInstrument>& instrument,
                      const NullableString& useCase, const NullableString& token) {
  const auto name = requireUseCase(useCase);
  if (!instrument) refuse(ProviderErrorCode::invalidRequest, "The request names no instrument.");
  database.run(
      "DELETE FROM provider_instruments WHERE token = ? AND use_case = ? "
      "AND (number = ? OR identifier = ?)",
      requireToken(database, token), name, instrument->number, instrument->identifier);
  if (database.changes() == 0) {
    refuse(ProviderErrorCode::instrumentGone, "The instrument is not stored any more.");
  }
}

void refuseUnregistered() {
  refuse(ProviderErrorCode::notRegistered, "The app is not registered with the provider.");
}

std::vector<ProviderInstrument> instrumentsOf(Database& database, const std::string& email) {
  std::vector<ProviderInstrument> instruments;
  if (const auto token = tokenOf(database, email)) {
    for (auto& [number, values] : readInstruments(database, *token, std::nullopt)) {
      instruments.push_back(std::move(values));
    }
  }
  return instruments;
}

void storeOrphan(Database& database, const std::string& email, const EnteredCard& card) {
  const auto accepted = accept(database, &card, card.instrumentUseCaseString(), std::nullopt);
  const auto token = tokenOf(database, email);
  if (!token) {
    refuse(ProviderErrorCode::unknownToken,
           "The provider does not know the guest yet; add a first card.");
  }
  store(database, *token, accepted);
}

bool loseInstrument(Database& database, const std::string& identifier) {
  database.run("DELETE FROM provider_instruments WHERE identifier = ?", identifier);
  return database.changes() > 0;
}

bool storeAgain(Database& database, const std::string& identifier) {
  const auto another = makeIdentifier(database, "ins");
  database.run(
      "INSERT INTO provider_instruments (token, use_case, identifier, brand, masked_pan, "
      "expiry_month, expiry_year, state) SELECT token, use_case, ?, brand, masked_pan, "
      "expiry_month, expiry_year, state FROM provider_instruments WHERE identifier = ?",
      another, identifier);
  return database.changes() > 0;
}

}  // namespace hlv::sandbox::provider
