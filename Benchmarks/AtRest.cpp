// What the kit costs a fresh process that begins to use it: threads that stay, allocations, page
// faults and time. Given the number of those page faults, what the first call of a bare program
// costs: the same written by hand, with as many page faults.
// Usage: AtRest [FAULTS]
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "Benchmarks/Support/Allocations.h"
#include "Benchmarks/Support/BenchHost.h"
#include "Benchmarks/Support/EnabledKit.h"

using namespace hlv;

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

/// The time of `count` page faults: reads a byte of so many places of the program's file that no
/// page was mapped near them before. Each costs what the first call into a far part of a program
/// costs.
double microsecondsOfFaults(long count) {
  if (count <= 0) return 0;
  constexpr std::size_t distance = 65'536;  // One page fault of a file maps so many bytes at most.
  const auto length = static_cast<std::size_t>(count) * distance;
  const int file = open("/proc/self/exe", O_RDONLY);
  void* const mapped = mmap(nullptr, length, PROT_READ, MAP_PRIVATE, file, 0);
  if (mapped == MAP_FAILED) std::exit(EXIT_FAILURE);
  const auto* const pages = static_cast<volatile const char*>(mapped);
  return microseconds([&] {
    for (std::size_t place = 0; place < length; place += distance) static_cast<void>(pages[place]);
  });
}

/// What enabling does, written by hand on the same platform: it asks the host for the same,
/// registers the configuration's key and observes the three notifications. Nothing is checked, and
/// no operation can be performed with it.
class BareKit {
 public:
  BareKit(const std::shared_ptr<Host>& host, std::shared_ptr<HLVSDKConfiguration> configuration)
      : host_(host),
        configuration_(std::move(configuration)),
        guest_(host->currentGuest()),
        backend_(host->apiManager()),
        provider_(host->inAppClient()),
        reachability_(host->reachability()) {
    provider_->registerWithAPIKey(paymentKey());
    const auto constants = host->constants();
    observe(UIApplicationWillEnterForegroundNotification);
    observe(constants->authorizationStatusNotification);
    observe(constants->reachabilityStateNotification);
  }

 private:
  NullableString paymentKey() const {
    const auto entry = configuration_->kits()->back();
    return static_cast<const HLVSDKPaylevenKitConfiguration&>(*entry->configuration()).paymentKey();
  }

  void observe(const NullableString& name) {
    const auto count = [this](const Notification&) { ++notified_; };
    observations_.push_back(Platform::current()->notificationCenter()->observe(name, count));
  }

  const std::shared_ptr<Host> host_;
  const std::shared_ptr<HLVSDKConfiguration> configuration_;
  const std::shared_ptr<HLVSDKGuest> guest_;
  const std::shared_ptr<HLVSDKAPIManager> backend_;
  const std::shared_ptr<PLVInAppClient> provider_;
  const std::shared_ptr<HLVSDKReachability> reachability_;
  std::vector<std::unique_ptr<Observation>> observations_;
  int notified_ = 0;
};

}  // namespace

namespace hlv::bench {

// Has a name of its own, so that a profiler can count in here only.
[[gnu::noinline]] void performOnce(const std::shared_ptr<Host>& host) {
  Host::install(host);
  HLVSDKPayleven::enableWithConfiguration(makeConfiguration());
}

}  // namespace hlv::bench

int main(int argc, char** argv) {
  bench::InstantNetwork network;
  bench::Records records;
  const auto host = std::make_shared<bench::BenchHost>(network, records);
  const auto threadsBefore = threads();
  microseconds([] {});  // The clock's own first call.
  if (argc > 1) {
    std::optional<BareKit> bare;
    auto faults = pageFaults();
    const double taken = microseconds([&] {
      Host::install(host);
      bare.emplace(host, bench::makeConfiguration());
    });
    faults = std::strtol(argv[1], nullptr, 10) - (pageFaults() - faults);
    std::printf("rest.reference %.2f\n", taken + microsecondsOfFaults(faults));
    return EXIT_SUCCESS;
  }
  auto faults = pageFaults();
  auto allocations = bench::allocations;
  const double taken = microseconds([&] { bench::performOnce(host); });
  allocations = bench::allocations - allocations;
  faults = pageFaults() - faults;
  if (!HLVSDKPayleven::sharedInstance()) return EXIT_FAILURE;
  std::printf("rest.threads %ld\nrest.allocations %zu\nrest.faults %ld\nrest.enabling %.2f\n",
              threads() - threadsBefore, allocations, faults, taken);
  HLVSDKPayleven::resetSharedInstance();
  Host::install(nullptr);
}
