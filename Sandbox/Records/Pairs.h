// The two sides of a guest, joined.
//
// Threading: pure functions; any.
#pragma once

#include <optional>
#include <vector>

#include "Sandbox/Records/BackendCard.h"
#include "Sandbox/Records/ProviderInstrument.h"

namespace hlv::sandbox {

/// A card and the instrument that stands for it, or one of them alone. They belong together when
/// the card carries the instrument's identifier. A card that carries none belongs to an instrument
/// of the same last four digits, brand and use case. An instrument belongs to one card only.
struct Pair {
  std::optional<BackendCard> card;
  std::optional<ProviderInstrument> instrument;
};

/// Every card in its order, and then the instruments that are left over.
std::vector<Pair> pairsOf(const std::vector<BackendCard>& cards,
                          std::vector<ProviderInstrument> instruments);

}  // namespace hlv::sandbox
