// One card at the backend, as plain values.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Sandbox/Records/EnteredAddress.h"

namespace hlv::sandbox {

struct BackendCard {
  std::string halvoID;
  std::string brand;
  std::string lastFourDigits;
  std::string useCase;
  std::optional<std::string> externalIdentifier;
  std::string cardHolder;
  std::string expiryMonth;
  std::string expiryYear;
  AddressFields billingAddress;
};

/// The card of that ID; null for none.
inline const BackendCard* findCard(const std::vector<BackendCard>& cards, std::string_view ID) {
  const auto found = std::find_if(cards.begin(), cards.end(),
                                  [&](const BackendCard& card) { return card.halvoID == ID; });
  return found == cards.end() ? nullptr : &*found;
}

}  // namespace hlv::sandbox
