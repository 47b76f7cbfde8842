// What each operation costs the processor, with services that answer inside the call, and what it
// asks for: memory, blocks on the main queue and remote calls. A first card written by hand is
// beside them.
#include <benchmark/benchmark.h>

#include <cstdint>

#include "Benchmarks/Support/Allocations.h"
#include "Benchmarks/Support/BareFirstCard.h"
#include "Benchmarks/Support/BenchHost.h"
#include "Benchmarks/Support/EnabledKit.h"

namespace hlv::bench {

/// Has a name of its own, so that a profiler can count in here only.
[[gnu::noinline]] void performOnce(const Operation& operation, EnabledKit& kit,
                                   DefaultPlatform& platform) {
  operation.start(kit);
  platform.runPending();
}

}  // namespace hlv::bench

int main(int argc, char** argv) {
  using namespace hlv;
  using namespace hlv::bench;
  InstantNetwork network;
  Records records;
  const auto platform = DefaultPlatform::make();
  const auto host = std::make_shared<BenchHost>(network, records);
  EnabledKit kit(platform, host, records);
  kit.synchronizeOnMainQueue();

  const auto measure = [&](benchmark::State& state, const Operation& operation) {
    const auto succeededBefore = kit.succeeded();
    for ([[maybe_unused]] auto _ : state) performOnce(operation, kit, *platform);

    std::size_t posts = 0;
    platform->setPostHook([&] { ++posts; });
    const auto callsBefore = records.calls;
    const auto allocationsBefore = allocations;
    performOnce(operation, kit, *platform);
    state.counters["allocations"] = static_cast<double>(allocations - allocationsBefore);
    state.counters["calls"] = static_cast<double>(records.calls - callsBefore);
    state.counters["posts"] = static_cast<double>(posts);
    platform->setPostHook(nullptr);
    const auto performed = static_cast<std::size_t>(state.iterations()) + 1;
    if (kit.succeeded() - succeededBefore != performed) state.SkipWithError("it failed");
  };
  for (const auto& operation : operations) {
    // Always as many, so that the instructions of one can be computed.
    benchmark::RegisterBenchmark(operation.name, measure, operation)->Iterations(20'000);
  }
  benchmark::RegisterBenchmark("bare-first-card", [&](benchmark::State& state) {
    BareFirstCard bare(*platform, *host, records);
    std::int64_t finished = 0;
    for ([[maybe_unused]] auto _ : state) {
      bool done = false;
      bare.start(&done);
      platform->runPending();
      finished += done;
    }
    if (finished != state.iterations()) state.SkipWithError("it failed");
  });
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
