// What the kit adds to a guest's first card in real time, beside the same four remote calls written
// by hand: the same services with the same arguments, and the same hops to the main thread, before
// the backend is asked and at the end. By hand nothing is checked and nothing can fail. Usage:
// RealLatency MILLISECONDS ROUNDS
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "Benchmarks/Support/BenchHost.h"
#include "Benchmarks/Support/DelayedNetwork.h"
#include "Benchmarks/Support/EnabledKit.h"

namespace hlv::bench {
namespace {

class Race {
 public:
  explicit Race(std::chrono::milliseconds latency) : network_(latency) {}

  /// Two differences in microseconds, from the order bare, kit, kit, bare: so a drift of the
  /// machine takes no side.
  std::array<double, 2> excessesOfOneRound() {
    const double bareBefore = bare();
    const double kitAfter = kit();
    const double kitBefore = kit();
    return {kitAfter - bareBefore, kitBefore - bare()};
  }

  bool allSucceeded() const { return kit_.succeeded() == started_; }

 private:
  struct Join {
    std::atomic<int> waiting{2};
    bool* done;
    std::shared_ptr<Queue> main;
    void leave() {
      if (--waiting == 0) main->async([done = done] { *done = true; });
    }
  };

  template <class Start, class Done>
  double microseconds(Start start, Done done) {
    const auto before = std::chrono::steady_clock::now();
    start();
    platform_->runUntil(done);
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - before)
        .count();
  }

  double kit() {
    ++started_;
    return microseconds([&] { kit_.addFirstCard(); }, [&] { return allSucceeded(); });
  }

  double bare() {
    bool done = false;
    return microseconds([&] { startBare(&done); }, [&] { return done; });
  }

  void startBare(bool* done) {
    const auto& card = *records_.card;
    const auto instrument = host_->makeCreditCardPaymentInstrument(
        card.pan(), card.expiryMonth(), card.expiryYear(), card.cvv(), card.cardHolder());
    host_->provider->createUserToken(
        records_.newGuest->email(), instrument, card.instrumentUseCaseString(),
        [this, done](const auto& token, auto) {
          host_->provider->getPaymentInstrumentsList(
              token, records_.card->instrumentUseCaseString(),
              [this, done, token](const auto& instruments, auto) {
                platform_->mainQueue()->async([this, done, token, found = instruments->back()] {
                  registerBare(token, *found, done);
                });
              });
        });
  }

  void registerBare(const NullableString& token, const PLVCreditCardPaymentInstrument& found,
                    bool* done) {
    records_.card->setExternalIdentifier(found.identifier());
    const auto join = std::make_shared<Join>();
    join->done = done;
    join->main = platform_->mainQueue();
    const auto update = host_->makeUpdateGuestRequestInfo();
    update->setPaymentToken(token);
    host_->backend->updateCurrentGuestWithRequest(
        update, [join](const auto&, const auto&) { join->leave(); });
    const auto request =
        HLVSDKAddCreditCardRequestInfo::initWithPaymentInstrument(records_.card, records_.address);
    request->setProvider(0);
    host_->backend->addCreditCardForGuest(
        records_.newGuest, request,
        [join](const auto&, const auto&, const auto&) { join->leave(); });
  }

  Records records_;
  DelayedNetwork network_;
  const std::shared_ptr<DefaultPlatform> platform_ = DefaultPlatform::make();
  const std::shared_ptr<BenchHost<DelayedNetwork>> host_ =
      std::make_shared<BenchHost<DelayedNetwork>>(network_, records_);
  EnabledKit kit_{platform_, host_, records_};
  std::size_t started_ = 0;
};

}  // namespace
}  // namespace hlv::bench

int main(int argc, char** argv) {
  if (argc != 3) return EXIT_FAILURE;
  const auto milliseconds = std::strtol(argv[1], nullptr, 10);
  const auto rounds = std::strtol(argv[2], nullptr, 10);
  hlv::bench::Race race{std::chrono::milliseconds(milliseconds)};
  race.excessesOfOneRound();

  std::vector<double> excess;
  for (long i = 0; i < rounds; ++i) {
    for (const double difference : race.excessesOfOneRound()) excess.push_back(difference);
  }
  if (!race.allSucceeded()) return EXIT_FAILURE;
  std::sort(excess.begin(), excess.end());

  // The median lies between these two order statistics in 95 of 100 runs, whatever the noise.
  const double count = static_cast<double>(excess.size());
  const double reach = 1.96 * std::sqrt(count) / 2;
  const auto at = [&](double rank) {
    return excess[static_cast<std::size_t>(std::clamp(rank, 0.0, count - 1))];
  };
  std::printf("latency-%ldms.excess %.1f %.1f %.1f\n", milliseconds, at(count / 2),
              at(std::floor(count / 2 - reach)), at(std::ceil(count / 2 + reach)));
}
