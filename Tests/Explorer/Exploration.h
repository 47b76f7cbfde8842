// Plays all histories of a scenario and lets the reference model examine each.
//
// Threading: one thread; the count may be read from anywhere.
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <string>

#include "Tests/Explorer/ReferenceModel.h"
#include "Tests/Explorer/Simulation.h"

namespace hlv::testing {

/// What is wrong with a history: the reference model's, or a card's number or security code in a
/// line.
std::optional<ReferenceModel::Violation> violationOf(const Scenario& scenario,
                                                     const History& history);

/// The history, with what was expected where it was not.
std::string textOf(const History& history,
                   const std::optional<ReferenceModel::Violation>& violation);

struct Limits {
  /// Beyond those of the scenario.
  std::size_t interferences = 0;
  std::uint64_t histories = std::numeric_limits<std::uint64_t>::max();
  DepthFirst::Orders orders = DepthFirst::Orders::distinct;
  Shard shard = {};
};

/// How far all explorations of a scenario are, and how many of them have nothing left.
struct Progress {
  std::atomic<std::uint64_t> histories{0};
  std::atomic<unsigned> ended{0};
  std::atomic<bool> failed{false};
};

/// What histories came to: what each operation and each notification saw, and what was left.
using Outcomes = std::set<std::uint64_t>;

/// The text of the shortest history that is not as it must be, with the path that replays it; or
/// nothing. Ends early when `stop` is set. The outcomes are kept where there is a place for them.
std::optional<std::string> explore(const Scenario& scenario, const Limits& limits,
                                   Progress& progress, const std::atomic<bool>& stop,
                                   Outcomes* outcomes = nullptr);

}  // namespace hlv::testing
