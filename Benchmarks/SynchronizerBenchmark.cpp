// The synchroniser on many instruments and as many cards. What is timed is its final step, on its
// own queue, and its completion; the slice is the longest work that the main thread does in one
// piece, with all four fetches answered there, as a share of the final step.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "Benchmarks/Support/EnabledKit.h"
#include "Benchmarks/Support/ProcessorTime.h"
#include "Benchmarks/Support/VirtualNetwork.h"
#include "Tests/Support/ManualPlatform.h"

namespace hlv::bench {
namespace {

/// In seconds.
struct Cost {
  double onQueue = 0;
  double longestOnMain = 0;
};

}  // namespace

/// Has a name of its own, so that a profiler can count in here only.
[[gnu::noinline]] Cost performOnce(EnabledKit& kit, testing::ManualPlatform& platform,
                                   VirtualNetwork& network) {
  Cost cost;
  cost.longestOnMain = secondsOf([&] { kit.synchronize(); });
  for (bool more = true; more;) {
    cost.longestOnMain =
        std::max(cost.longestOnMain,
                 secondsOf([&] { more = platform.main->runOne() || network.replyNext(); }));
    if (!more) cost.onQueue += secondsOf([&] { more = platform.runEverything(); });
  }
  return cost;
}

namespace {

void synchronise(benchmark::State& state) {
  const auto platform = std::make_shared<testing::ManualPlatform>();
  VirtualNetwork network;
  Records records(static_cast<std::size_t>(state.range(0)));
  EnabledKit kit(platform, std::make_shared<BenchHost>(network, records), records);

  Cost total;
  std::size_t started = 0;
  for ([[maybe_unused]] auto _ : state) {
    const auto cost = performOnce(kit, *platform, network);
    state.SetIterationTime(cost.onQueue);
    total.onQueue += cost.onQueue;
    total.longestOnMain += cost.longestOnMain;
    ++started;
  }
  if (kit.succeeded() != started) state.SkipWithError("a synchronisation failed");
  state.counters["slice"] = total.longestOnMain / total.onQueue;
  state.counters["calls"] = static_cast<double>(records.calls) / static_cast<double>(started);
}
// Always as many, so that the instructions of one can be computed.
BENCHMARK(synchronise)->Arg(10)->Iterations(2'000)->UseManualTime();
BENCHMARK(synchronise)->Arg(100)->Iterations(200)->UseManualTime();
BENCHMARK(synchronise)->Arg(1'000)->Iterations(20)->UseManualTime();

}  // namespace
}  // namespace hlv::bench

BENCHMARK_MAIN();
