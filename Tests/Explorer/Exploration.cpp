#include "Tests/Explorer/Exploration.h"

#include <algorithm>

#include "Tests/Explorer/LiveBlocks.h"
#include "Tests/Secrecy/CardDataSearch.h"

namespace hlv::testing {

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

std::optional<std::string> Exploration::run(Progress& progress, const std::atomic<bool>& stop) {
  Simulation simulation;
  DepthFirst choices;
  std::size_t blocks = 0;
  std::uint64_t played = 0;
  do {
    const auto& history = simulation.play(scenario_, limits_.disturbances, choices);
    if (const auto violation = violationOf(scenario_, history)) {
      keepIfShorter(history, *violation, choices);
    }
    progress.histories.store(++played, std::memory_order_relaxed);

    // What lasts is made by the first history.
    simulation.forget();
    if (played > 1 && !shortest_ && liveBlocks() > blocks) {
      keepIfShorter({}, {0, "no memory left over"}, choices);
    }
    blocks = liveBlocks();
    if (shortest_) progress.failed = true;
  } while (!stop && played < limits_.histories && choices.next());
  return shortest_;
}

void Exploration::keepIfShorter(const History& history, const ReferenceModel::Violation& violation,
                                const DepthFirst& choices) {
  const auto moves = static_cast<std::size_t>(std::count_if(
      history.begin(), history.end(), [](const auto& event) { return event.isMove; }));
  if (shortest_ && moves >= shortestMoves_) return;
  shortestMoves_ = moves;
  shortest_ = textOf(history, violation) + "Replay it with: --replay '" + scenario_.name + "; " +
              std::to_string(limits_.disturbances) + "; " + choices.path() + "'\n";
}

}  // namespace hlv::testing
