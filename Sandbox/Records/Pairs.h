// The two sides of a guest, joined.
//
// Threading: pure functions; any.
#pragma once

#include <algorithm>
#include <optional>
#include <vector>

#include "Sandbox/Records/BackendCard.h"
#include "Sandbox/Records/ProviderInstrument.h"

namespace hlv::sandbox {

/// They belong together when the card carries the instrument's identifier. A card that carries none
/// belongs to an instrument of the same last four digits, brand and use case.
inline bool belongTogether(const BackendCard& card, const ProviderInstrument& instrument) {
  if (card.externalIdentifier) return card.externalIdentifier == instrument.identifier;
  return instrument.maskedPan.ends_with(card.lastFourDigits) && card.brand == instrument.brand &&
         card.useCase == instrument.useCase;
}

/// A card and the instrument that stands for it, or one of them alone. An instrument belongs to one
/// card only.
struct Pair {
  std::optional<BackendCard> card;
  std::optional<ProviderInstrument> instrument;
};

/// Every card in its order, and then the instruments that are left over.
inline std::vector<Pair> pairsOf(const std::vector<BackendCard>& cards,
                                 std::vector<ProviderInstrument> instruments) {
  std::vector<Pair> pairs;
  for (const auto& card : cards) {
    const auto found =
        std::find_if(instruments.begin(), instruments.end(),
                     [&](const auto& instrument) { return belongTogether(card, instrument); });
    if (found == instruments.end()) {
      pairs.push_back({card, std::nullopt});
    } else {
      pairs.push_back({card, *found});
      instruments.erase(found);
    }
  }
  for (const auto& instrument : instruments) pairs.push_back({std::nullopt, instrument});
  return pairs;
}

}  // namespace hlv::sandbox
