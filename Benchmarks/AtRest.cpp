// What enabling the kit costs a fresh process: threads that stay, and the time of the one call.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>

#include "Benchmarks/Support/BenchHost.h"
#include "Benchmarks/Support/EnabledKit.h"

namespace {

long threads() { return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}); }

}  // namespace

int main() {
  using namespace hlv;
  bench::InstantNetwork network;
  bench::Records records;
  Host::install(std::make_shared<bench::BenchHost<bench::InstantNetwork>>(network, records));
  const auto configuration = bench::makeConfiguration();

  const auto threadsBefore = threads();
  const auto before = std::chrono::steady_clock::now();
  HLVSDKPayleven::enableWithConfiguration(configuration);
  const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - before;
  if (!HLVSDKPayleven::sharedInstance()) return EXIT_FAILURE;
  std::printf("rest.threads %ld\nrest.enabling %.2f\n", threads() - threadsBefore, taken.count());
  HLVSDKPayleven::resetSharedInstance();
  Host::install(nullptr);
}
