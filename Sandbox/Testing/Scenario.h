// The ways in which a backend and a provider come apart.
//
// Threading: plain values and pure functions; any.
#pragma once

#include <string_view>
#include <vector>

#include "Values/Result.h"

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
/// Otherwise a sentence with what is possible, which masks card numbers.
Result<Scenario> scenarioNamed(std::string_view name);
std::vector<Scenario> allScenarios();

}  // namespace hlv::sandbox
