#include "Sandbox/Records/Pairs.h"

#include <algorithm>

namespace hlv::sandbox {
namespace {

bool belongTogether(const BackendCard& card, const ProviderInstrument& instrument) {
  if (card.externalIdentifier) return card.externalIdentifier == instrument.identifier;
  return instrument.maskedPan.ends_with(card.lastFourDigits) && card.brand == instrument.brand &&
         card.useCase == instrument.useCase;
}

}  // namespace

std::vector<Pair> pairsOf(const std::vector<BackendCard>& cards,
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
