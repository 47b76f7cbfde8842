// What an operation adds to the critical path of its remote calls, in virtual time, for every
// combination of latencies: one means nothing.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "Benchmarks/Support/BenchHost.h"
#include "Benchmarks/Support/EnabledKit.h"
#include "Benchmarks/Support/VirtualPlatform.h"

namespace hlv::bench {
namespace {

using Call = RemoteCall;
using Time = VirtualPlatform::Time;

/// The remote calls that an operation waits for: first one after the other, then all at once.
struct Path {
  Operation operation;
  std::vector<Call> inTurn;
  std::vector<Call> atOnce;
};

const std::vector<Path> paths = {
    {operations[0], {Call::createToken, Call::listDefault}, {Call::updateGuest, Call::addCard}},
    {operations[1], {Call::addInstrument, Call::listDefault, Call::addCard}, {}},
    {operations[2], {Call::deleteCard, Call::listDefault, Call::removeInstrument}, {}},
    {operations[4],
     {},
     {Call::listPrivate, Call::listBusiness, Call::listDefault, Call::fetchCards}}};

Time criticalPath(const Path& path, VirtualPlatform& platform) {
  Time inTurn = 0;
  Time longest = 0;
  for (const auto call : path.inTurn) inTurn += platform.latency(call);
  for (const auto call : path.atOnce) longest = std::max(longest, platform.latency(call));
  return inTurn + longest;
}

/// From the start of the operation to its completion, or -1 when it does not succeed.
Time perform(const Operation& operation, EnabledKit& kit, VirtualPlatform& platform) {
  const auto start = platform.now();
  const auto before = kit.succeeded();
  Time taken = -1;
  operation.start(kit);
  while (platform.runOne()) {
    if (taken < 0 && kit.succeeded() > before) taken = platform.now() - start;
  }
  return taken;
}

void setLatencies(const std::vector<Call>& calls, unsigned combination, VirtualPlatform& platform) {
  for (const auto call : calls) {
    platform.latency(call) = Time{1} << combination % 4;
    combination /= 4;
  }
}

}  // namespace
}  // namespace hlv::bench

int main() {
  using namespace hlv::bench;
  const auto owned = std::make_shared<VirtualPlatform>(VirtualPlatform::Thread::service);
  VirtualPlatform& platform = *owned;
  Records records;
  EnabledKit kit(owned, std::make_shared<BenchHost>(platform, records), records);

  int combinations = 0;
  double worst = 1;
  for (const auto& path : paths) {
    auto calls = path.inTurn;
    calls.insert(calls.end(), path.atOnce.begin(), path.atOnce.end());
    // A synchronisation asks for removals and must not wait for them.
    platform.latency(Call::removeInstrument) = 64;
    for (unsigned combination = 0; combination < 1u << 2 * calls.size(); ++combination) {
      setLatencies(calls, combination, platform);
      const auto taken = perform(path.operation, kit, platform);
      if (taken < 0) return EXIT_FAILURE;
      const auto ratio =
          static_cast<double>(taken) / static_cast<double>(criticalPath(path, platform));
      if (std::abs(ratio - 1) > std::abs(worst - 1)) worst = ratio;
      ++combinations;
    }
  }
  std::printf("virtual.combinations %d\nvirtual.worst-ratio %.6f\n", combinations, worst);
}
