// Explores every order of events that a scenario has. Exit status 1 when a history is not as it
// must be, or when the number of histories is not the one on record.
#include <poll.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <new>
#include <optional>
#include <sstream>

#include "Tests/Explorer/Exploration.h"

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

namespace {

using namespace hlv::testing;

struct Options {
  Limits limits;
  unsigned jobs = 2;
  bool comparesOrders = false, playsLong = false;
  std::string replay, part;
  std::vector<std::string> merged, scenarios;
};

/// What the workers and their parent share.
struct Board {
  std::atomic<bool> stop{false};
  Progress lines[256];

  std::uint64_t total() const {
    std::uint64_t total = 0;
    for (const auto& line : lines) total += line.histories;
    return total;
  }
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

void print(const std::string& text) {
  std::fputs(text.c_str(), stdout);
  std::fflush(stdout);
}

/// A worker's share of every scenario.
void playShare(const std::vector<const Scenario*>& scenarios, const Options& options, unsigned job,
               Board& board) {
  auto limits = options.limits;
  limits.shard = {limits.shard.number * options.jobs + job, limits.shard.of * options.jobs};
  for (std::size_t i = 0; i < scenarios.size() && !board.stop; ++i) {
    if (const auto failure = explore(*scenarios[i], limits, board.lines[i], board.stop)) {
      print("\n" + scenarios[i]->name + "\n" + *failure);
    }
  }
}

/// Plays a worker's scenarios in all orders too, and compares what comes of both.
void compareOrders(const std::vector<const Scenario*>& scenarios, const Options& options,
                   unsigned job, Board& board) {
  for (std::size_t i = job; i < scenarios.size(); i += options.jobs) {
    auto limits = options.limits;
    auto& line = board.lines[i];
    Progress all;
    Outcomes distinct, everything;
    explore(*scenarios[i], limits, line, board.stop, &distinct);
    limits.orders = DepthFirst::Orders::all;
    explore(*scenarios[i], limits, all, board.stop, &everything);
    if (all.ended + line.ended < 2) {
      print("too many to compare: " + scenarios[i]->name + "\n");
      continue;
    }
    line.failed = distinct != everything;
    std::printf("%12lu %12lu %12zu %12zu  %s\n", line.histories.load(), all.histories.load(),
                distinct.size(), everything.size(), scenarios[i]->name.c_str());
  }
}

/// Starts the workers and shows how far they are until all have ended; false if one has died.
bool runWorkers(const std::vector<const Scenario*>& scenarios, const Options& options,
                Board& board) {
  int ends[2];
  if (pipe(ends) != 0) return false;
  for (unsigned job = 0; job < options.jobs; ++job) {
    if (fork() == 0) {
      close(ends[0]);
      (options.comparesOrders ? compareOrders : playShare)(scenarios, options, job, board);
      std::exit(0);  // Not _Exit: a build that counts lines writes them down at the end.
    }
  }
  close(ends[1]);
  // The workers hold the other end, so it hangs up when the last of them has ended.
  pollfd hangUp{ends[0], POLLIN, 0};
  while (poll(&hangUp, 1, 200) == 0) {
    if (isatty(STDERR_FILENO)) std::cerr << "\r" << board.total() << " histories " << std::flush;
  }
  bool fine = true;
  for (int status = 0; wait(&status) > 0;) fine = fine && status == 0;
  return fine;
}

/// Adds what other runs have written with --part; false if a file has nothing.
bool merge(const std::vector<const Scenario*>& scenarios, const Options& options, Board& board) {
  for (const auto& file : options.merged) {
    const auto part = readRecord(file);
    if (part.empty()) return false;
    for (std::size_t i = 0; i < scenarios.size(); ++i) {
      const auto found = part.find(scenarios[i]->name);
      if (found == part.end() || found->second.size() != 3) continue;
      board.lines[i].histories += found->second[0];
      board.lines[i].ended += found->second[1] != 0 ? 1 : 0;
      if (found->second[2] != 0) board.lines[i].failed = true;
    }
  }
  return true;
}

int report(const std::vector<const Scenario*>& scenarios, const Options& options,
           const Board& board) {
  auto record = readRecord(HLV_HISTORIES_ON_RECORD);
  const auto workers = options.merged.empty() ? options.jobs : options.merged.size();
  std::ofstream part(options.part);
  bool fine = true;
  std::printf("%12s %12s  %s\n", "histories", "on record", "scenario");
  for (std::size_t i = 0; i < scenarios.size(); ++i) {
    const auto& line = board.lines[i];
    const auto& name = scenarios[i]->name;
    // Nothing where nobody has played it to the end.
    const auto& counts = record[name];
    const auto* expected = counts.size() > options.limits.interferences
                               ? &counts[options.limits.interferences]
                               : nullptr;
    const bool ended = line.ended == workers;
    part << name << ": " << line.histories << " " << ended << " " << line.failed << "\n";
    const bool asRecorded = !ended || !options.part.empty() || !expected ||
                            line.histories == *expected || options.comparesOrders;
    fine = fine && asRecorded && !line.failed;
    std::printf("%12lu %12s  %s%s%s\n", line.histories.load(),
                expected ? std::to_string(*expected).c_str() : "-", name.c_str(),
                ended || options.comparesOrders ? "" : ", and more",
                line.failed  ? "  VIOLATED"
                : asRecorded ? ""
                             : "  NOT AS ON RECORD");
  }
  std::printf("%12lu histories, %s\n", board.total(), fine ? "no violation" : "NOT FINE");
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
  app.add_option("--jobs", options.jobs, "processes")->check(CLI::Range(1, 64));
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
  void* shared =
      mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) return 2;
  auto& board = *new (shared) Board;
  const bool ended = options.merged.empty() ? runWorkers(scenarios, options, board)
                                            : merge(scenarios, options, board);
  const int status = report(scenarios, options, board);
  return ended ? status : 3;
}
