#include "Tests/Explorer/History.h"

namespace hlv::testing {
namespace {

std::string textOf(const Posted& posted) {
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

}  // namespace

std::string Move::text() const {
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

std::string Event::text() const {
  const std::string indent(2 * depth, ' ');
  if (!isMove) return indent + "    " + output;
  return indent + "> " + move.text() + (move.onMain ? ", on main" : ", off main");
}

}  // namespace hlv::testing
