// What enabling the kit costs a fresh process: threads that stay, page faults, and the time of the
// one call beside that of as many faults alone.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>

#include "Benchmarks/Support/BenchHost.h"
#include "Benchmarks/Support/EnabledKit.h"

namespace {

long threads() { return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}); }

long pageFaults() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_minflt;
}

template <class Work>
double microseconds(Work work) {
  const auto before = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - before)
      .count();
}

/// The time of as many page faults and nothing else: the program's own file is mapped once more,
/// and a byte written to each page.
double microsecondsOfFaults(long count) {
  const auto pageSize = sysconf(_SC_PAGESIZE);
  const int file = open("/proc/self/exe", O_RDONLY);
  auto* const pages = static_cast<char*>(mmap(nullptr, static_cast<std::size_t>(count * pageSize),
                                              PROT_READ | PROT_WRITE, MAP_PRIVATE, file, 0));
  if (pages == MAP_FAILED) std::exit(EXIT_FAILURE);
  return microseconds([&] {
    for (long page = 0; page < count; ++page) pages[page * pageSize] = 1;
  });
}

}  // namespace

int main() {
  using namespace hlv;
  bench::InstantNetwork network;
  bench::Records records;
  Host::install(std::make_shared<bench::BenchHost>(network, records));
  const auto configuration = bench::makeConfiguration();

  const auto threadsBefore = threads();
  auto faults = pageFaults();
  const double enabling =
      microseconds([&] { HLVSDKPayleven::enableWithConfiguration(configuration); });
  faults = pageFaults() - faults;
  if (!HLVSDKPayleven::sharedInstance()) return EXIT_FAILURE;
  std::printf("rest.threads %ld\nrest.faults %ld\nrest.enabling %.2f\nrest.reference %.2f\n",
              threads() - threadsBefore, faults, enabling, microsecondsOfFaults(faults));
  HLVSDKPayleven::resetSharedInstance();
  Host::install(nullptr);
}
