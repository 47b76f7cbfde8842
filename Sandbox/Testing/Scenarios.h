// The ways in which a backend and a provider come apart. Private to the sandbox and the server.
//
// Threading: inside `Store::write`.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

/// By the guest's newest card.
enum class Scenario {
  instrumentWithoutCard,
  cardWithoutInstrument,
  /// Gone at the backend only.
  halfDeleted,
  /// At the provider.
  sameCardTwice,
  /// The backend has forgotten it.
  lostToken,
};

std::string_view textOf(Scenario scenario);
/// Missing for a name that is none.
std::optional<Scenario> scenarioNamed(std::string_view name);
/// A sentence about a name that is none, with what is possible. Masks card numbers.
std::string noSuchScenario(std::string_view name);
std::vector<Scenario> allScenarios();

/// Brings the two sides of a guest apart. No service is asked, so no fault meets it. Returns one
/// plain sentence when it cannot, or an empty string. Throws `Refusal`.
[[nodiscard]] std::string makeScenario(Database& database, const std::string& email,
                                       Scenario scenario);

}  // namespace hlv::sandbox
