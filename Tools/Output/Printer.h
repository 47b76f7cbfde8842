// Shows reports, for a person or for a program.
//
// Threading: the main thread.
#pragma once

#include <string>

#include "Sandbox/JSON/Json.h"
#include "Tools/Output/Report.h"

namespace hlv::tool {

/// The one JSON document of a report.
sandbox::Json documentOf(const Report& report);

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

}  // namespace hlv::tool
