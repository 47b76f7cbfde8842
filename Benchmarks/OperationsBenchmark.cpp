// What each operation costs the processor, with services that answer inside the call, and what it
// asks for: memory, blocks on the main queue and remote calls. A first card written by hand is
// beside them, and both after other work has taken the caches.
#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

#include "Benchmarks/Support/Allocations.h"
#include "Benchmarks/Support/BareFirstCard.h"
#include "Benchmarks/Support/BenchHost.h"
#include "Benchmarks/Support/EnabledKit.h"
#include "Benchmarks/Support/ProcessorTime.h"

namespace hlv::bench {

/// Has a name of its own, so that a profiler can count in here only.
[[gnu::noinline]] void performOnce(const std::function<void()>& start, DefaultPlatform& platform) {
  start();
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
  BareFirstCard bare(*platform, *host, records);
  std::vector<char> others(std::size_t{1} << 26);

  const auto measure = [&](benchmark::State& state, const std::function<void()>& start) {
    const auto succeededBefore = kit.succeeded() + bare.succeeded();
    for ([[maybe_unused]] auto _ : state) performOnce(start, *platform);

    std::size_t posts = 0;
    platform->setPostHook([&] { ++posts; });
    const auto callsBefore = records.calls;
    const auto allocationsBefore = allocations;
    performOnce(start, *platform);
    state.counters["allocations"] = static_cast<double>(allocations - allocationsBefore);
    state.counters["calls"] = static_cast<double>(records.calls - callsBefore);
    state.counters["posts"] = static_cast<double>(posts);
    platform->setPostHook(nullptr);
    const auto performed = static_cast<std::size_t>(state.iterations()) + 1;
    if (kit.succeeded() + bare.succeeded() - succeededBefore != performed) {
      state.SkipWithError("it failed");
    }
  };
  const auto measureCold = [&](benchmark::State& state, const std::function<void()>& start) {
    for ([[maybe_unused]] auto _ : state) {
      for (std::size_t place = 0; place < others.size(); place += 64) ++others[place];
      state.SetIterationTime(secondsOf([&] { performOnce(start, *platform); }));
    }
  };
  // Always as many, so that the instructions of one can be computed.
  const auto add = [&](const std::string& name, const std::function<void()>& start) {
    benchmark::RegisterBenchmark(name.c_str(), measure, start)->Iterations(20'000);
    benchmark::RegisterBenchmark(("cold-" + name).c_str(), measureCold, start)
        ->Iterations(20)
        ->UseManualTime();
  };
  add("bare-first-card", [&] { bare.addFirstCard(); });
  for (const auto& operation : operations) {
    add(operation.name, [&] { operation.start(kit); });
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
