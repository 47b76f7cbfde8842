// The synchroniser on many instruments and as many cards. What is timed is its final step, on its
// own queue; the slice is the longest work that the main thread does in one piece, with all four
// fetches answered there.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>

#include "Benchmarks/Support/BenchHost.h"
#include "Benchmarks/Support/EnabledKit.h"
#include "Benchmarks/Support/VirtualPlatform.h"

namespace hlv::bench {
namespace {

/// Of processor time, so that other programs on the machine do not count.
template <class Work>
double seconds(Work work) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  };
  const double start = now();
  work();
  return now() - start;
}

void synchronise(benchmark::State& state) {
  using Thread = VirtualPlatform::Thread;
  const auto platform = std::make_shared<VirtualPlatform>(Thread::main);
  Records records(static_cast<std::size_t>(state.range(0)));
  EnabledKit kit(platform, std::make_shared<BenchHost<VirtualPlatform>>(*platform, records),
                 records);

  double slices = 0;
  std::size_t started = 0;
  for ([[maybe_unused]] auto _ : state) {
    double onQueue = 0;
    double longest = seconds([&] { kit.synchronize(); });
    for (bool more = true; more;) {
      std::optional<Thread> ran;
      const double slice = seconds([&] { ran = platform->runOne(); });
      if (ran == Thread::serialQueue) onQueue += slice;
      if (ran == Thread::main) longest = std::max(longest, slice);
      more = ran.has_value();
    }
    state.SetIterationTime(onQueue);
    slices += longest;
    ++started;
  }
  if (kit.succeeded() != started) state.SkipWithError("a synchronisation failed");
  const auto perRun = [&](double total) { return total / static_cast<double>(started); };
  state.counters["slice"] = perRun(slices) * 1e6;
  state.counters["calls"] = perRun(static_cast<double>(records.calls));
}
BENCHMARK(synchronise)->Arg(10)->Arg(100)->Arg(1'000)->UseManualTime();

}  // namespace
}  // namespace hlv::bench

BENCHMARK_MAIN();
