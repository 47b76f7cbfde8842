// Explores every order of events that a scenario has. Exit status 1 when a history is not as it
// must be, or when the number of histories is not the one on record.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>

#include "Tests/Explorer/Exploration.h"

namespace {

using namespace hlv::testing;

struct Options {
  Limits limits;
  bool comparesOrders = false, playsLong = false;
  std::string replay, part;
  std::vector<std::string> merged, scenarios;
};

/// The numbers of histories on record, by scenario and by added interferences.
using Record = std::map<std::string, std::vector<std::uint64_t>>;

Record readRecord(const std::string& file) {
  Record record;
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line);) {
    const auto colon = line.find(": ");
    if (line.starts_with("#") || colon == std::string::npos) continue;
    std::istringstream numbers(line.substr(colon + 2));
    for (std::uint64_t number = 0; numbers >> number;) {
      record[line.substr(0, colon)].push_back(number);
    }
  }
  return record;
}

int replay(const std::string& line) {
  const auto first = line.find("; ");
  const auto second = line.find("; ", first + 1);
  const auto& scenarios = allScenarios();
  const auto scenario = std::find_if(scenarios.begin(), scenarios.end(), [&](const auto& one) {
    return one.name == line.substr(0, first);
  });
  auto choices =
      second == std::string::npos ? std::nullopt : DepthFirst::along(line.substr(second + 2));
  if (scenario == scenarios.end() || !choices) {
    std::cerr << "A replay line is: SCENARIO; INTERFERENCES; PATH\n";
    return 2;
  }
  Simulation simulation;
  const auto& history =
      simulation.play(*scenario, std::strtoul(line.c_str() + first + 2, nullptr, 10), *choices);
  const auto violation = violationOf(*scenario, history);
  std::cout << textOf(history, violation);
  return violation ? 1 : 0;
}

/// Returns how far each scenario has come, and prints what is wrong.
std::vector<Progress> play(const std::vector<const Scenario*>& scenarios, const Options& options) {
  std::vector<Progress> lines(scenarios.size());
  for (std::size_t i = 0; i < scenarios.size(); ++i) {
    if (const auto failure = explore(*scenarios[i], options.limits, lines[i])) {
      std::cout << "\n" << scenarios[i]->name << "\n" << *failure;
      if (options.limits.stopsAtFirstFailure) break;
    }
  }
  return lines;
}

/// Plays the scenarios in all orders too, and compares what comes of both.
std::vector<Progress> compareOrders(const std::vector<const Scenario*>& scenarios,
                                    const Options& options) {
  std::vector<Progress> lines(scenarios.size());
  for (std::size_t i = 0; i < scenarios.size(); ++i) {
    auto limits = options.limits;
    auto& line = lines[i];
    Progress all;
    Outcomes distinct, everything;
    explore(*scenarios[i], limits, line, &distinct);
    limits.orders = DepthFirst::Orders::all;
    explore(*scenarios[i], limits, all, &everything);
    if (all.ended + line.ended < 2) {
      std::printf("too many to compare: %s\n", scenarios[i]->name.c_str());
      continue;
    }
    line.failed = distinct != everything;
    std::printf("%12lu %12lu %12zu %12zu  %s\n", line.histories, all.histories, distinct.size(),
                everything.size(), scenarios[i]->name.c_str());
  }
  return lines;
}

/// Adds up what other runs have written with --part.
std::vector<Progress> merge(const std::vector<const Scenario*>& scenarios, const Options& options) {
  std::vector<Progress> lines(scenarios.size());
  for (const auto& file : options.merged) {
    const auto part = readRecord(file);
    if (part.empty()) {
      std::cerr << file << " has nothing that --part has written.\n";
      std::exit(2);
    }
    for (std::size_t i = 0; i < scenarios.size(); ++i) {
      const auto found = part.find(scenarios[i]->name);
      if (found == part.end() || found->second.size() != 3) continue;
      lines[i].histories += found->second[0];
      lines[i].ended += found->second[1];
      lines[i].failed |= found->second[2] != 0;
    }
  }
  return lines;
}

/// Writes a part that --merge adds up; false if it cannot.
bool writePart(const std::vector<const Scenario*>& scenarios, const std::vector<Progress>& lines,
               const std::string& file) {
  std::ofstream part(file);
  for (std::size_t i = 0; i < scenarios.size(); ++i) {
    const auto& line = lines[i];
    part << scenarios[i]->name << ": " << line.histories << " " << line.ended << " " << line.failed
         << "\n";
  }
  return part.flush().good();
}

int report(const std::vector<const Scenario*>& scenarios, const Options& options,
           const std::vector<Progress>& lines) {
  auto record = readRecord(HLV_HISTORIES_ON_RECORD);
  const auto parts = std::max<std::size_t>(1, options.merged.size());
  std::uint64_t total = 0;
  bool fine = true;
  std::printf("%12s %12s  %s\n", "histories", "on record", "scenario");
  for (std::size_t i = 0; i < scenarios.size(); ++i) {
    const auto& line = lines[i];
    total += line.histories;
    const auto& name = scenarios[i]->name;
    // Nothing where nobody has played it to the end.
    const auto& counts = record[name];
    const auto* expected = counts.size() > options.limits.interferences
                               ? &counts[options.limits.interferences]
                               : nullptr;
    const bool ended = line.ended == parts;
    const bool asRecorded = !ended || options.limits.shard.of > 1 || !expected ||
                            line.histories == *expected || options.comparesOrders;
    fine = fine && asRecorded && !line.failed;
    std::printf("%12lu %12s  %s%s%s\n", line.histories,
                expected ? std::to_string(*expected).c_str() : "-", name.c_str(),
                ended || options.comparesOrders ? "" : ", and more",
                line.failed  ? "  VIOLATED"
                : asRecorded ? ""
                             : "  NOT AS ON RECORD");
  }
  std::printf("%12lu histories, %s\n", total, fine ? "no violation" : "NOT FINE");
  return fine ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  std::pair<std::size_t, std::size_t> shard{1, 1};
  CLI::App app("Explores every order of events of the kit's operations.", "Explorer");
  app.add_option("--interferences", options.limits.interferences,
                 "how many more things may come in between in each history");
  app.add_option("--at-most", options.limits.histories, "histories of each scenario");
  app.add_flag("--first", options.limits.stopsAtFirstFailure,
               "stop at the first failure instead of looking for the shortest");
  app.add_flag("--long", options.playsLong, "the long scenarios too");
  app.add_option("--shard", shard,
                 "K/N: only the K-th of N parts of the histories of each scenario")
      ->delimiter('/');
  app.add_option("--part", options.part, "write what was played into this file, for --merge");
  app.add_option("--merge", options.merged, "files of all parts: report them, and play nothing");
  app.add_flag("--compare-orders", options.comparesOrders,
               "play what differs only in the order of independent events too, and compare");
  app.add_option("--replay", options.replay,
                 "show one history, from the line that a failure prints");
  app.add_option("scenarios", options.scenarios, "only these; all by default");
  CLI11_PARSE(app, argc, argv);
  if (shard.first < 1 || shard.first > shard.second) {
    std::cerr << "--shard must be K/N, K from 1 to N\n";
    return 2;
  }
  options.limits.shard = {shard.first - 1, shard.second};
  if (!options.replay.empty()) return replay(options.replay);

  std::vector<const Scenario*> scenarios;
  for (const auto& scenario : allScenarios()) {
    const auto& wanted = options.scenarios;
    if (wanted.empty() && scenario.isLong && !options.playsLong) continue;
    if (wanted.empty() || std::find(wanted.begin(), wanted.end(), scenario.name) != wanted.end()) {
      scenarios.push_back(&scenario);
    }
  }
  if (scenarios.size() < std::max<std::size_t>(1, options.scenarios.size())) {
    std::cerr << "There is no such scenario.\n";
    return 2;
  }
  const auto lines = !options.merged.empty()  ? merge(scenarios, options)
                     : options.comparesOrders ? compareOrders(scenarios, options)
                                              : play(scenarios, options);
  if (!options.part.empty()) return writePart(scenarios, lines, options.part) ? 0 : 3;
  return report(scenarios, options, lines);
}
