// What a tester does to the two services, wherever they are.
#pragma once

#include <cstdint>
#include <vector>

#include "Sandbox/Cards/EnteredCard.h"
#include "Sandbox/Faults/Fault.h"
#include "Sandbox/Testing/Scenario.h"
#include "Values/Result.h"

namespace hlv::sandbox {

/// For the guest who is signed in. What fails otherwise than by a result throws `Problem`.
///
/// Threading: any.
class Tester {
 public:
  virtual ~Tester() = default;
  /// Stores an instrument at the provider that the backend does not know.
  virtual Result<> addOrphanInstrument(const CardFields& card) = 0;
  /// Brings the two sides of the guest apart.
  virtual Result<> makeScenario(Scenario scenario) = 0;
  /// Returns the number of the armed fault.
  virtual Result<std::int64_t> arm(const Fault& fault) = 0;
  virtual std::vector<Fault> armed() = 0;
  virtual std::vector<Firing> firings() = 0;
  virtual void clearFaults() = 0;
};

}  // namespace hlv::sandbox
