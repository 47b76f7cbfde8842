// What happened, in order: what the simulation did to the kit, and what the kit did to the
// simulation.
//
// Threading: plain values.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Tests/Explorer/Scenario.h"

namespace hlv::testing {

inline std::string textOf(const Posted& posted) {
  const auto number = [](int value) { return value < 0 ? "nothing" : std::to_string(value); };
  switch (posted.name) {
    case Posted::Name::foreground:
      return "the app returns to the foreground";
    case Posted::Name::authorization:
      return "authorised: " + number(posted.state);
    case Posted::Name::reachability:
      return "reachability: " + number(posted.previous) + " -> " + number(posted.state);
  }
  return {};
}

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
  /// The number of the call's error, which is the same in every order of events.
  std::size_t error = 0;

  /// Whether it is one of the things that may come in between, of which a history holds few.
  bool isInterference() const { return kind >= Kind::answerAgain; }
  bool isOnCall() const { return kind >= Kind::answer && kind <= Kind::answerAgain; }
  std::string text() const {
    const auto answers = [&](const char* verb) {
      return "call " + std::to_string(call) + verb + answer->name;
    };
    switch (kind) {
      case Kind::goOn:
        return "go on";
      case Kind::end:
        return "end";
      case Kind::start:
        return "start operation " + std::to_string(operation) + ", " + request->name;
      case Kind::runMainQueue:
        return "run a block of the main queue";
      case Kind::runSerialQueue:
        return "run a block of the serial queue";
      case Kind::answer:
        return answers(" answers ");
      case Kind::answerAgain:
        return answers(" answers again: ");
      case Kind::neverAnswer:
        return "call " + std::to_string(call) + " will never answer";
      case Kind::releaseManager:
        return "release the manager";
      case Kind::releaseSynchronizer:
        return "release the synchroniser";
      case Kind::releaseKit:
        return "release the kit";
      case Kind::post:
        return textOf(*notification);
    }
    return {};
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
