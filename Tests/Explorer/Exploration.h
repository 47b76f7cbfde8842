// Plays all histories of a scenario and lets the reference model examine each.
//
// Threading: one thread.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iostream>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "Tests/Explorer/ReferenceModel.h"
#include "Tests/Explorer/Simulation.h"
#include "Tests/Secrecy/CardDataSearch.h"

namespace hlv::testing {

/// What is wrong with a history: the reference model's, or a card's number or security code in a
/// line.
inline std::optional<ReferenceModel::Violation> violationOf(const Scenario& scenario,
                                                            const History& history) {
  static const auto cardData = [] {
    const FakeEnteredCard card;
    return CardDataSearch(*card.pan(), *card.cvv());
  }();
  for (std::size_t i = 0; i < history.size(); ++i) {
    if (cardData.in(history[i].output))
      return ReferenceModel::Violation{i, "no card data in this line"};
  }
  return ReferenceModel::examine(scenario, history);
}

/// The history, with what was expected where it was not.
inline std::string textOf(const History& history,
                          const std::optional<ReferenceModel::Violation>& violation) {
  std::string text;
  for (std::size_t i = 0; i <= history.size(); ++i) {
    if (violation && violation->event == i) text += "!! expected: " + violation->expected + "\n";
    if (i < history.size()) text += history[i].text() + "\n";
  }
  return text;
}

struct Limits {
  /// Beyond those of the scenario.
  std::size_t interferences = 0;
  std::uint64_t histories = std::numeric_limits<std::uint64_t>::max();
  DepthFirst::Orders orders = DepthFirst::Orders::distinct;
  Shard shard = {};
  bool stopsAtFirstFailure = false;
};

/// How far the explorations of a scenario have come, and how many of them have nothing left.
struct Progress {
  std::uint64_t histories = 0;
  std::size_t ended = 0;
  bool failed = false;
};

/// What histories came to: what each operation and each notification saw, and what was left.
using Outcomes = std::set<std::uint64_t>;

/// Neighbours of different owners may stand in any order.
inline std::uint64_t outcomeOf(const History& history) {
  std::map<std::size_t, std::uint64_t> seen;
  for (const auto& event : history) {
    if (event.isMove) continue;
    auto& byOwner = seen[event.owner];
    if (event.owner == Event::nobody) byOwner = 0;
    byOwner = mixed(byOwner, std::hash<std::string>()(event.output));
  }
  std::uint64_t outcome = 0;
  for (const auto& [owner, lines] : seen) outcome = mixed(mixed(outcome, owner), lines);
  return outcome;
}

/// The text of the shortest history that is not as it must be, with the path that replays it; or
/// nothing. The outcomes are kept where there is a place for them.
inline std::optional<std::string> explore(const Scenario& scenario, const Limits& limits,
                                          Progress& progress, Outcomes* outcomes = nullptr) {
  Simulation simulation;
  DepthFirst choices(limits.orders, limits.shard);
  std::optional<std::string> shortest;
  std::ptrdiff_t fewestMoves = 0;
  const auto keepIfShorter = [&](const History& history,
                                 const ReferenceModel::Violation& violation) {
    const auto moves = std::count_if(history.begin(), history.end(),
                                     [](const auto& event) { return event.isMove; });
    if (shortest && moves >= fewestMoves) return;
    fewestMoves = moves;
    shortest = textOf(history, violation) + "Replay it with: --replay '" + scenario.name + "; " +
               std::to_string(limits.interferences) + "; " + choices.path() + "'\n";
  };
  bool goesOn = true;
  while (goesOn && !(shortest && limits.stopsAtFirstFailure) &&
         progress.histories < limits.histories) {
    const auto& history = simulation.play(scenario, limits.interferences, choices);
    if (choices.isComplete()) {
      ++progress.histories;
      if (outcomes) outcomes->insert(outcomeOf(history));
      if (const auto violation = violationOf(scenario, history)) {
        keepIfShorter(history, *violation);
      }
      if (progress.histories % 100'000 == 0 && isatty(STDERR_FILENO)) {
        std::cerr << "\r" << progress.histories << " histories of " << scenario.name << std::flush;
      }
    }
    goesOn = choices.next();
  }
  progress.failed = shortest.has_value();
  if (!goesOn) ++progress.ended;
  return shortest;
}

}  // namespace hlv::testing
