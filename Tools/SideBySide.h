// The backend's cards and the provider's instruments next to each other.
//
// Threading: immutable; any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Sandbox/Sandbox.h"
#include "Tools/Table.h"

namespace hlv::tool {

/// A card and an instrument belong together when the card carries the instrument's identifier. A
/// card that carries none belongs to an instrument of the same last four digits, brand and use
/// case. An instrument belongs to one card only.
class SideBySide {
 public:
  SideBySide(std::vector<sandbox::BackendCard> cards,
             std::vector<sandbox::ProviderInstrument> instruments);

  /// What stands on one line; one of the two may be missing.
  struct Pair {
    const sandbox::BackendCard* card = nullptr;
    const sandbox::ProviderInstrument* instrument = nullptr;
  };
  /// The cards in the backend's order, then the instruments without one.
  const std::vector<Pair>& pairs() const { return pairs_; }
  std::size_t unmatched() const;
  /// "Both sides agree.", or how many do not match.
  std::string verdict() const;
  /// In short form where `columns` are few.
  Table table(std::size_t columns) const;

  // The pairs point into the lists.
  SideBySide(const SideBySide&) = delete;
  SideBySide& operator=(const SideBySide&) = delete;

 private:
  const std::vector<sandbox::BackendCard> cards_;
  const std::vector<sandbox::ProviderInstrument> instruments_;
  std::vector<Pair> pairs_;
};

/// "visa •••• 1111 12/2030 default", for a card or an instrument.
std::string describe(const sandbox::BackendCard& card);
std::string describe(const sandbox::ProviderInstrument& instrument);
/// "Harbour Road 1, 20457, Hamburg, DE".
std::string describe(const sandbox::AddressFields& address);

}  // namespace hlv::tool
