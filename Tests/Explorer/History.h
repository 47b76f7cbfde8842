// What happened, in order: what the simulation did to the kit, and what the kit did to the
// simulation.
//
// Threading: plain values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Tests/Explorer/Scenario.h"

namespace hlv::testing {

/// One thing that the simulation does.
struct Move {
  enum class Kind {
    goOn,
    end,
    start,
    runMainQueue,
    runSerialQueue,
    answer,
    neverAnswer,
    answerAgain,
    releaseManager,
    releaseSynchronizer,
    releaseKit,
    post
  };

  Kind kind;
  /// The thread that it happens on.
  bool onMain = true;
  std::size_t operation = 0;
  const Request* request = nullptr;
  /// Calls to the services are numbered from 0.
  std::size_t call = 0;
  const Answer* answer = nullptr;
  const Posted* notification = nullptr;
  /// The call by the number that is the same in every order of events; its error has it too.
  std::size_t error = 0;
  /// Which of the requests, answers or notifications that are possible here.
  std::size_t variant = 0;

  /// The same in every history in which the same happens.
  std::uint64_t number() const {
    return ((static_cast<std::uint64_t>(kind) * 2 + (onMain ? 1U : 0U)) * 100 + variant) * 1000 +
           error;
  }
  /// Whether it is one of the things that may come in between, of which a history holds few.
  bool isInterference() const { return kind >= Kind::answerAgain; }
  bool isOnCall() const { return kind >= Kind::answer && kind <= Kind::answerAgain; }
  std::string text() const {
    static const char* const texts[] = {"go on",
                                        "end",
                                        "start operation ",
                                        "run a block of the main queue",
                                        "run a block of the serial queue",
                                        " answers ",
                                        " will never answer",
                                        " answers again: ",
                                        "release the manager",
                                        "release the synchroniser",
                                        "release the kit",
                                        ""};
    std::string text = texts[static_cast<std::size_t>(kind)];
    if (isOnCall()) text = "call " + std::to_string(call) + text;
    if (request) text += std::to_string(operation) + ", " + request->name;
    if (answer) text += answer->name;
    if (notification) text += notification->text;
    return text;
  }
};

/// A move, or a line about what the kit did. What happens inside a call of the kit's, or inside a
/// completion, lies one level deeper than that.
struct Event {
  bool isMove = false;
  Move move{};
  std::size_t depth = 0;
  std::string output;
  /// The operation or notification that it belongs to; `nobody` for what the kit looks like.
  static constexpr std::size_t nobody = static_cast<std::size_t>(-1);
  std::size_t owner = nobody;

  std::string text() const {
    const std::string indent(2 * depth, ' ');
    if (!isMove) return indent + "    " + output;
    return indent + "> " + move.text() + (move.onMain ? ", on main" : ", off main");
  }
};

using History = std::vector<Event>;

}  // namespace hlv::testing
