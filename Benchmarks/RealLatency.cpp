// What a guest's first card takes in real time beyond the remote calls that wait for each other, by
// the kit and written by hand: hops between threads, timers that fire late, and the work itself.
// Prints a ratio of the two for each of twice as many races as rounds.
// Usage: RealLatency MILLISECONDS ROUNDS
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <utility>

#include "Benchmarks/Support/BareFirstCard.h"
#include "Benchmarks/Support/BenchHost.h"
#include "Benchmarks/Support/EnabledKit.h"
#include "Platform/Default/DefaultPlatform.h"

namespace hlv::bench {
namespace {

/// Answers after a real latency, always the same, on one thread.
class DelayedNetwork {
 public:
  explicit DelayedNetwork(std::chrono::milliseconds latency) : latency_(latency) {}

  template <class Answer>
  void answer(testing::Service, Answer answer) {
    const auto due = std::chrono::steady_clock::now() + latency_;
    queue_->async([due, answer = std::move(answer)] {
      // A sleeping thread wakes up late by more than what is to be measured, so it wakes up early
      // and watches the clock.
      std::this_thread::sleep_until(due - std::chrono::microseconds(500));
      while (std::chrono::steady_clock::now() < due) {
      }
      answer();
    });
  }

 private:
  const std::chrono::milliseconds latency_;
  const std::shared_ptr<DefaultPlatform> platform_ = DefaultPlatform::make();
  const std::shared_ptr<Queue> queue_ = platform_->makeSerialQueue("services");
};

class Race {
 public:
  explicit Race(std::chrono::milliseconds latency)
      : network_(latency),
        // The token, the list, and the two requests to the backend at once.
        waits_(3 * std::chrono::duration<double, std::micro>(latency).count()) {}

  /// By how much the kit takes longer than the calls, as two multiples of what it takes by hand.
  /// The order is bare, kit, kit, bare, so a drift of the machine takes no side.
  std::array<double, 2> ratiosOfOneRound() {
    const double bareBefore = microsecondsOf(bare_);
    const double kitAfter = microsecondsOf(kit_);
    const double kitBefore = microsecondsOf(kit_);
    return {kitAfter / bareBefore, kitBefore / microsecondsOf(bare_)};
  }

 private:
  /// Beyond the waits.
  template <class Racer>
  double microsecondsOf(Racer& racer) {
    const auto wanted = racer.succeeded() + 1;
    const auto before = std::chrono::steady_clock::now();
    racer.addFirstCard();
    platform_->runUntil([&] { return racer.succeeded() == wanted; });
    const auto taken = std::chrono::steady_clock::now() - before;
    return std::chrono::duration<double, std::micro>(taken).count() - waits_;
  }

  Records records_;
  DelayedNetwork network_;
  const double waits_;
  const std::shared_ptr<DefaultPlatform> platform_ = DefaultPlatform::make();
  const std::shared_ptr<BenchHost> host_ = std::make_shared<BenchHost>(network_, records_);
  BareFirstCard bare_{*platform_, *host_, records_};
  EnabledKit kit_{platform_, host_, records_};
};

}  // namespace
}  // namespace hlv::bench

int main(int argc, char** argv) {
  if (argc != 3) return EXIT_FAILURE;
  const auto milliseconds = std::strtol(argv[1], nullptr, 10);
  const auto rounds = std::strtol(argv[2], nullptr, 10);
  hlv::bench::Race race{std::chrono::milliseconds(milliseconds)};
  race.ratiosOfOneRound();

  std::printf("latency-%ldms.ratio", milliseconds);
  for (long i = 0; i < rounds; ++i) {
    for (const double ratio : race.ratiosOfOneRound()) std::printf(" %.3f", ratio);
  }
  std::printf("\n");
}
