// Card numbers to type: published test numbers, never real accounts.
#pragma once

#include <string>
#include <vector>

#include "Sandbox/Cards/EnteredCard.h"

namespace hlv::sandbox {

struct TestCard {
  std::string name;
  /// Complete and valid; the expiry lies in the future.
  CardFields fields;
  /// What the services do with it, in one plain sentence.
  std::string effect;
};

/// Every test card; those that succeed come first. Any thread.
std::vector<TestCard> testCards();
/// The one of that name, or null. Any thread.
const TestCard* findTestCard(const std::string& name);

}  // namespace hlv::sandbox
