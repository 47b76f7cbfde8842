#include "Tests/Explorer/Exploration.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <map>
#include <new>

#include "Tests/Explorer/LiveBlocks.h"
#include "Tests/Secrecy/CardDataSearch.h"

// The sanitizers bring operators of their own, and one of them looks for leaks itself.
#ifdef HLV_COUNTS_BLOCKS

void* operator new(std::size_t size) {
  void* block = std::malloc(size == 0 ? 1 : size);
  if (!block) throw std::bad_alloc();
  if (hlv::testing::countsBlocks) ++hlv::testing::liveBlocks;
  return block;
}

void operator delete(void* block) noexcept {
  if (block && hlv::testing::countsBlocks) --hlv::testing::liveBlocks;
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

#endif

namespace hlv::testing {

namespace {

/// Neighbours of different owners may stand in any order.
std::uint64_t outcomeOf(const History& history) {
  const Uncounted ours;
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

}  // namespace

std::optional<ReferenceModel::Violation> violationOf(const Scenario& scenario,
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

std::string textOf(const History& history,
                   const std::optional<ReferenceModel::Violation>& violation) {
  std::string text;
  for (std::size_t i = 0; i <= history.size(); ++i) {
    if (violation && violation->event == i) text += "!! expected: " + violation->expected + "\n";
    if (i < history.size()) text += history[i].text() + "\n";
  }
  return text;
}

std::optional<std::string> explore(const Scenario& scenario, const Limits& limits,
                                   Progress& progress, const std::atomic<bool>& stop,
                                   Outcomes* outcomes) {
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
  const auto leavesMemory = [&](DepthFirst again) {
    const auto blocks = liveBlocks;
    simulation.play(scenario, limits.interferences, again);
    simulation.forget();
    return liveBlocks > blocks;
  };
  bool goesOn = true;
  while (goesOn && !stop && progress.histories < limits.histories) {
    const auto blocks = liveBlocks;
    const auto& history = simulation.play(scenario, limits.interferences, choices);
    if (choices.isComplete()) {
      ++progress.histories;
      if (outcomes) outcomes->insert(outcomeOf(history));
      if (const auto violation = violationOf(scenario, history)) {
        keepIfShorter(history, *violation);
      }
    }
    simulation.forget();
    // Played once more: what lasts is made only once.
    if (!shortest && liveBlocks > blocks && leavesMemory(*DepthFirst::along(choices.path()))) {
      keepIfShorter({}, {0, "no memory left over"});
    }
    if (shortest) progress.failed = true;
    goesOn = choices.next();
  }
  if (!goesOn) ++progress.ended;
  return shortest;
}

}  // namespace hlv::testing
