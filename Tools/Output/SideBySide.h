// The backend's cards and the provider's instruments next to each other.
//
// Threading: immutable; any thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Sandbox/Records/Pairs.h"
#include "Tools/Output/Table.h"

namespace hlv::sandbox::tool {

class SideBySide {
 public:
  SideBySide(const std::vector<BackendCard>& cards, std::vector<ProviderInstrument> instruments);

  /// How many stand alone on their line.
  std::size_t unmatched() const;
  /// "Both sides agree.", or how many do not match.
  std::string verdict() const;
  /// In short form where `columns` are few.
  Table table(std::size_t columns) const;

 private:
  /// What stands on each line.
  std::vector<Pair> pairs_;
};

/// "visa •••• 1111 12/2030 default", for a card or an instrument.
std::string describe(const BackendCard& card);
std::string describe(const ProviderInstrument& instrument);
/// "Harbour Road 1, 20457, Hamburg, DE".
std::string describe(const AddressFields& address);

}  // namespace hlv::sandbox::tool
