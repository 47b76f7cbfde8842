// The payment provider's rules: its users and their instruments. Private to the sandbox and the
// server.
//
// Threading: inside `Store::read` and `Store::write`. Those that take a fault are the operations of
// the service: they throw `Refusal` where a rule is broken, and the fault, where it is one that
// changes what is stored or returned, has its effect.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Sandbox/Cards/EnteredCard.h"
#include "Sandbox/Faults/Fault.h"
#include "Sandbox/Records/ProviderInstrument.h"
#include "Sandbox/Store/Database.h"
#include "Values/NullableString.h"

namespace hlv::sandbox::provider {

/// Keeps a masked number of the card and never its security code. An address that has a token keeps
/// it. Returns no token where the fault or the card's number says so; null is no card.
NullableString createUserToken(Database& database, const NullableString& email,
                               const EnteredCard* card, const NullableString& useCase,
                               std::optional<FaultKind> fault);
void addInstrument(Database& database, const EnteredCard* card, const NullableString& token,
                   const NullableString& useCase, std::optional<FaultKind> fault);

/// Oldest first; missing where the fault says so.
std::optional<std::vector<NumberedInstrument>> listInstruments(Database& database,
                                                               const NullableString& token,
                                                               const NullableString& useCase,
                                                               std::optional<FaultKind> fault);
/// By its number or its identifier.
struct NamedInstrument {
  /// No instrument has the number 0.
  std::int64_t number = 0;
  NullableString identifier = {};
};
/// A missing instrument is refused.
void removeInstrument(Database& database, const std::optional<NamedInstrument>& instrument,
                      const NullableString& useCase, const NullableString& token);

/// Throws the refusal of a caller who is not registered.
[[noreturn]] void refuseUnregistered();

// What no service offers, and so no fault meets.

/// Of a guest's address, whether or not the backend knows the token.
std::vector<ProviderInstrument> instrumentsOf(Database& database, const std::string& email);
/// Stores an instrument for a user whom the provider knows. Throws `Refusal`.
void storeOrphan(Database& database, const std::string& email, const EnteredCard& card);
/// Loses an instrument, or stores it once more under another identifier. False when there is none.
bool loseInstrument(Database& database, const std::string& identifier);
bool storeAgain(Database& database, const std::string& identifier);

}  // namespace hlv::sandbox::provider
