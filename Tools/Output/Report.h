// How a command came out, and showing it to a person or a program.
//
// Threading: a report is a plain value, any thread; printing, the main thread.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Sandbox/Calls/Journal.h"
#include "Sandbox/JSON/Json.h"
#include "Sandbox/Sandbox.h"
#include "Tools/Output/Table.h"
#include "Tools/Output/Terminal.h"
#include "Values/Error.h"

namespace hlv::sandbox::tool {

struct Report {
  enum class Outcome {
    succeeded,
    /// The completion brought neither an error nor what was asked for.
    broughtNothing,
    failed,
    neverCompleted
  };

  std::string operation;
  Outcome outcome = Outcome::succeeded;
  /// What happened, for a person.
  std::string sentence;
  /// What the operation reported; may stand beside a success of its first half.
  ErrorPtr error;
  std::vector<Event> timeline;
  std::vector<BackendCard> backend;
  std::vector<ProviderInstrument> provider;
  /// Why the two sides are not known, in one sentence; empty when they are.
  std::string unknownSides;
  /// What a command that only lists something shows in place of the timeline and the two sides.
  std::function<std::string(const Terminal&)> listing;
  /// What the command adds to the JSON document.
  Json details = Json::object();

  /// Shows `table` instead, or the sentence `empty`.
  void list(Table table, const std::string& empty) {
    listing = [table = std::move(table), empty](const Terminal& terminal) {
      return table.isEmpty() ? empty + "\n" : table.text(terminal);
    };
  }

  /// Shows the sentence alone.
  void showNoSides() {
    listing = [](const Terminal&) { return std::string(); };
  }

  /// Whether an error was reported, or not what was asked for.
  bool isFailure() const { return error || outcome != Outcome::succeeded; }
  int exitStatus() const { return isFailure() ? 1 : 0; }
};

/// The one JSON document of a report.
Json documentOf(const Report& report);

/// As text, or as exactly one JSON document.
class Printer {
 public:
  explicit Printer(bool json) : json_(json) {}

  // The steps of a longer operation; in JSON its one document holds them.
  void heading(const std::string& text) const;
  void step(const Report& report) const;

  void print(const Report& report) const;
  /// A sentence on standard error, and an error document where one is expected.
  void printProblem(const std::string& sentence) const;

 private:
  const bool json_;
};

}  // namespace hlv::sandbox::tool
