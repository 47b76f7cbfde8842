// What an operation adds to the critical path of its remote calls, in virtual time, for every
// combination of latencies: one means nothing.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "Benchmarks/Support/EnabledKit.h"
#include "Benchmarks/Support/VirtualNetwork.h"
#include "Tests/Support/ManualPlatform.h"

namespace hlv::bench {
namespace {

using Call = testing::Service;
using Time = VirtualNetwork::Time;

/// The remote calls that an operation waits for: first one after the other, then all at once.
struct Path {
  Operation operation;
  std::vector<Call> inTurn;
  std::vector<Call> atOnce;
};

const std::vector<Path> paths = {
    {operations[0], {Call::createToken, Call::defaultList}, {Call::updateGuest, Call::addCard}},
    {operations[1], {Call::addInstrument, Call::defaultList, Call::addCard}, {}},
    {operations[2], {Call::deleteCard, Call::defaultList, Call::removeInstrument}, {}},
    {operations[4],
     {},
     {Call::privateList, Call::businessList, Call::defaultList, Call::fetchCards}}};

Time criticalPath(const Path& path, VirtualNetwork& network) {
  Time inTurn = 0;
  Time longest = 0;
  for (const auto call : path.inTurn) inTurn += network.latency(call);
  for (const auto call : path.atOnce) longest = std::max(longest, network.latency(call));
  return inTurn + longest;
}

/// From the start of the operation to its completion, or -1 when it does not succeed.
Time perform(const Operation& operation, EnabledKit& kit, testing::ManualPlatform& platform,
             VirtualNetwork& network) {
  const auto start = network.now();
  const auto before = kit.succeeded();
  Time taken = -1;
  platform.onMainThread = true;
  operation.start(kit);
  platform.onMainThread = false;
  do {
    platform.runEverything();
    if (taken < 0 && kit.succeeded() > before) taken = network.now() - start;
  } while (network.replyNext());
  return taken;
}

void setLatencies(const std::vector<Call>& calls, unsigned combination, VirtualNetwork& network) {
  for (const auto call : calls) {
    network.latency(call) = Time{1} << combination % 4;
    combination /= 4;
  }
}

}  // namespace
}  // namespace hlv::bench

int main() {
  using namespace hlv::bench;
  const auto platform = std::make_shared<hlv::testing::ManualPlatform>();
  VirtualNetwork network;
  Records records;
  EnabledKit kit(platform, std::make_shared<BenchHost>(network, records), records);

  int combinations = 0;
  double worst = 1;
  for (const auto& path : paths) {
    auto calls = path.inTurn;
    calls.insert(calls.end(), path.atOnce.begin(), path.atOnce.end());
    // A synchronisation asks for removals and must not wait for them.
    network.latency(Call::removeInstrument) = 64;
    for (unsigned combination = 0; combination < 1u << 2 * calls.size(); ++combination) {
      setLatencies(calls, combination, network);
      const auto taken = perform(path.operation, kit, *platform, network);
      if (taken < 0) return EXIT_FAILURE;
      const auto ratio =
          static_cast<double>(taken) / static_cast<double>(criticalPath(path, network));
      if (std::abs(ratio - 1) > std::abs(worst - 1)) worst = ratio;
      ++combinations;
    }
  }
  std::printf("virtual.combinations %d\nvirtual.worst-ratio %.6f\n", combinations, worst);
}
