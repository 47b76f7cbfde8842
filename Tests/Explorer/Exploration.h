// Plays all histories of a scenario and lets the judge examine each.
//
// Threading: one thread; the count may be read from anywhere.
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "Tests/Explorer/ReferenceModel.h"
#include "Tests/Explorer/Simulation.h"

namespace hlv::testing {

/// What is wrong with a history: the judge's opinion, or a card's number or security code in a
/// line.
std::optional<ReferenceModel::Violation> violationOf(const Scenario& scenario,
                                                     const History& history);

/// The history, with what was expected where it was not.
std::string textOf(const History& history,
                   const std::optional<ReferenceModel::Violation>& violation);

class Exploration {
 public:
  struct Limits {
    /// Beyond those of the scenario.
    std::size_t disturbances = 0;
    std::uint64_t histories = std::numeric_limits<std::uint64_t>::max();
  };

  /// How far it is, and whether somebody wants it to stop.
  struct Progress {
    std::atomic<std::uint64_t> histories{0};
    std::atomic<bool> failed{false};
  };

  Exploration(const Scenario& scenario, const Limits& limits)
      : scenario_(scenario), limits_(limits) {}

  /// The text of the shortest history that is not as it must be, with the path that replays it; or
  /// nothing. Ends early when `stop` is set.
  std::optional<std::string> run(Progress& progress, const std::atomic<bool>& stop);

 private:
  void keepIfShorter(const History& history, const ReferenceModel::Violation& violation,
                     const DepthFirst& choices);

  const Scenario& scenario_;
  const Limits limits_;
  std::optional<std::string> shortest_;
  std::size_t shortestMoves_ = 0;
};

}  // namespace hlv::testing
