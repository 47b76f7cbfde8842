// What a guest's first card costs by the kit, and by hand, after other work has taken the caches.
// A simulator of them counts the lines that are fetched again.
// Usage: ColdCaches ROUNDS
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "Benchmarks/Support/BareFirstCard.h"
#include "Benchmarks/Support/BenchHost.h"
#include "Benchmarks/Support/EnabledKit.h"
#include "Benchmarks/Support/ProcessorTime.h"

namespace hlv::bench {

// Each has a name of its own, so that a profiler can count in there only.
[[gnu::noinline]] void performByKit(EnabledKit& kit, DefaultPlatform& platform) {
  kit.addFirstCard();
  platform.runPending();
}

[[gnu::noinline]] void performByHand(BareFirstCard& bare, bool* done, DefaultPlatform& platform) {
  bare.start(done);
  platform.runPending();
}

}  // namespace hlv::bench

int main(int argc, char** argv) {
  using namespace hlv;
  using namespace hlv::bench;
  if (argc != 2) return EXIT_FAILURE;
  const auto rounds = static_cast<std::size_t>(std::strtol(argv[1], nullptr, 10));
  InstantNetwork network;
  Records records;
  const auto platform = DefaultPlatform::make();
  const auto host = std::make_shared<BenchHost>(network, records);
  EnabledKit kit(platform, host, records);
  BareFirstCard bare(*platform, *host, records);

  std::vector<char> others(std::size_t{1} << 26);
  const auto takeCaches = [&] {
    for (std::size_t place = 0; place < others.size(); place += 64) ++others[place];
  };
  std::vector<double> ratios;
  bool done = false;
  for (std::size_t round = 0; round < rounds; ++round) {
    takeCaches();
    const double byKit = secondsOf([&] { performByKit(kit, *platform); });
    takeCaches();
    ratios.push_back(byKit / secondsOf([&] { performByHand(bare, &done, *platform); }));
  }
  if (!done || kit.succeeded() != rounds) return EXIT_FAILURE;
  std::nth_element(ratios.begin(), ratios.begin() + ratios.size() / 2, ratios.end());
  std::printf("cold.ratio %.2f\n", ratios[ratios.size() / 2]);
}
