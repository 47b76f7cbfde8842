// The whole kit on the default platform, with operations, answers, notifications and releases on
// many threads at once. What happens is a matter of the seed; in which order, of the scheduler.
#include <gtest/gtest.h>

#include <atomic>
#include <deque>
#include <random>
#include <thread>
#include <vector>

#include "Platform/SharedSlot.h"
#include "Public/HLVSDKPaylevenKit.h"
#include "Tests/Stress/StressHost.h"

namespace hlv::testing {
namespace {

using Manager = HLVSDKPaylevenPaymentInstrumentManager;
using Synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer;

constexpr std::size_t workCount = 1000;
constexpr std::size_t starterCount = 4;

enum class Step {
  addFirst,
  addNew,
  remove,
  update,
  synchronize,
  enterForeground,
  authorize,
  becomeReachable,
  releaseManager,
  releaseKit
};

/// One step of the work, and what became of it.
struct Work {
  Step step = Step::addFirst;
  bool onMainThread = false, throughKit = false, releasesKitInside = false;
  std::atomic<int> completions{0}, elsewhere{0};
  std::atomic<bool> unanswered{false};
  /// The manager or synchroniser that was asked.
  std::weak_ptr<void> worker;
  /// The guest, the card and the completion.
  std::vector<std::weak_ptr<void>> held;
};

class Stress {
 public:
  Stress(std::uint32_t seed, bool withReleases)
      : threads_([this] { wakeMain(); }),
        host_(std::make_shared<StressHost>(StressHost::Setting{
            seed, &threads_, [this](std::size_t number) { works_[number].unanswered = true; }})) {
    std::mt19937 random(seed);
    for (auto& work : works_) {
      work.step = static_cast<Step>(random() % (withReleases ? 10 : 8));
      work.onMainThread = random() % 5 == 0;
      work.throughKit = random() % 2 == 0;
      // The completion of an update may come on any thread, where no kit is enabled.
      work.releasesKitInside = withReleases && work.step != Step::update && random() % 10 == 0;
    }
    Platform::install(platform_);
    Host::install(host_);
  }
  ~Stress() {
    Host::install(nullptr);
    Platform::install(nullptr);
  }
  Stress(const Stress&) = delete;
  Stress& operator=(const Stress&) = delete;

  std::weak_ptr<Platform> platform() const { return platform_; }

  void run() {
    renewKit();
    renewManager();
    std::vector<std::thread> starters;
    for (std::size_t first = 1; first <= starterCount; ++first) {
      starters.emplace_back([this, first] {
        for (auto number = first; number < workCount; number += starterCount) begin(number);
        --starting_;
        wakeMain();
      });
    }
    platform_->runUntil([this] { return isSettled(); });
    for (auto& starter : starters) starter.join();
  }

  /// After `run`. Lets the kit and the manager go. Returns how many operations had to complete.
  std::size_t expectWhatWasPromised() {
    std::size_t owed = 0;
    for (std::size_t number = 1; number < workCount; ++number) {
      const auto& work = works_[number];
      if (work.step >= Step::enterForeground) continue;
      SCOPED_TRACE("work " + std::to_string(number) + ", step " +
                   std::to_string(static_cast<int>(work.step)));
      // A synchronisation keeps its synchroniser.
      const bool isOwed =
          !work.unanswered && (work.step == Step::synchronize || !work.worker.expired());
      EXPECT_GE(work.completions, isOwed ? 1 : 0);
      EXPECT_LE(work.completions, 1);
      EXPECT_TRUE(work.step == Step::update || work.elsewhere == 0) << "off the main thread";
      owed += isOwed ? 1U : 0U;
    }

    HLVSDKPayleven::resetSharedInstance();
    manager_.store(nullptr);
    std::size_t alive = 0;
    const auto count = [&](const std::weak_ptr<void>& object) {
      alive += object.expired() ? 0 : 1;
    };
    for (const auto& work : works_) {
      count(work.worker);
      for (const auto& object : work.held) count(object);
    }
    EXPECT_EQ(alive, 0U);
    return owed;
  }

 private:
  void wakeMain() {
    platform_->mainQueue()->async([] {});
  }

  /// Whether nothing runs, nothing waits, and nothing came while that was asked.
  bool isSettled() const {
    if (starting_ > 0) return false;
    const auto posted = threads_.posted();
    return threads_.isQuiet() && platform_->isIdle() && threads_.posted() == posted;
  }

  void renewManager() {
    manager_.store(Manager::initWithAPIManager(host_->apiManager(), host_->inAppClient(),
                                               host_->reachability()));
  }

  /// On the main thread.
  void renewKit() {
    HLVSDKPayleven::resetSharedInstance();
    HLVSDKPayleven::enableWithConfiguration(configuration_);
  }

  void begin(std::size_t number) {
    const auto block = [this, number] { perform(number); };
    works_[number].onMainThread ? platform_->mainQueue()->async(block) : block();
  }

  void post(std::string name, Dictionary info) {
    platform_->notificationCenter()->post({std::move(name), std::move(info)});
  }

  void perform(std::size_t number) {
    switch (works_[number].step) {
      case Step::enterForeground:
        return post(UIApplicationWillEnterForegroundNotification, {});
      case Step::authorize:
        if (const auto kit = HLVSDKPayleven::sharedInstance()) {
          kit->setCurrentGuest(StressHost::guestOf(number, true));
          kit->setUpPaymentInstrumentsSynchronizer();
        }
        return post("authorization", {{"isAuthorized", true}});
      case Step::becomeReachable:
        return post("reachability", {{"state", 1}, {"previous", 0}});
      case Step::releaseManager:
        return renewManager();
      case Step::releaseKit:
        return platform_->mainQueue()->async([this] { renewKit(); });
      default:
        return operate(number);
    }
  }

  void operate(std::size_t number) {
    auto& work = works_[number];
    const auto guest = StressHost::guestOf(number, work.step != Step::addFirst);
    const auto card = std::make_shared<FakeEnteredCard>();
    const auto address = std::make_shared<FakeAddress>();
    const auto token = std::make_shared<int>();
    const auto completed = [this, &work, token](const auto&...) {
      ++work.completions;
      if (!platform_->isMainThread()) ++work.elsewhere;
      if (work.releasesKitInside) renewKit();
    };
    work.held = {guest, card, token};
    if (work.step == Step::synchronize) {
      const auto synchronizer =
          Synchronizer::initWithAPIManager(host_->apiManager(), host_->inAppClient());
      work.worker = synchronizer;
      return synchronizer->synchronizePaymentInstrumentsForGuest(guest, completed);
    }
    const std::shared_ptr<HLVSDKPaymentInstrumentManager> manager =
        work.throughKit ? HLVSDKPaymentManager::sharedManager() : manager_.load();
    work.worker = manager;
    // A kit that is just being renewed has no manager.
    if (!manager) return;
    if (work.step == Step::remove) {
      manager->deletePaymentInstrumentWithID("card-1", "default", guest, completed);
    } else if (work.step == Step::update) {
      manager->updatePaymentInstrument("card-1", address, guest, completed);
    } else {
      manager->addPaymentInstrument(card, address, guest, completed);
    }
  }

  const std::shared_ptr<DefaultPlatform> platform_ = DefaultPlatform::make();
  const std::shared_ptr<HLVSDKConfiguration> configuration_ =
      HLVSDKConfiguration::make(List<HLVSDKKitEntry>{HLVSDKKitEntry::make(
          HLVSDKPayleven::kitClass(),
          HLVSDKPaylevenKitConfiguration::configurationWithBlock(
              [](const auto& configuration) { configuration->setPaymentKey("key"); }))});
  /// The first belongs to the guest of the enabled kit.
  std::deque<Work> works_ = std::deque<Work>(workCount);
  std::atomic<std::size_t> starting_{starterCount};
  SharedSlot<Manager> manager_;
  AnswerThreads threads_;
  const std::shared_ptr<StressHost> host_;
};

TEST(StressTest, EachOperationReportsOnceOnTheMainThreadAndNothingIsLeftOfIt) {
  for (std::uint32_t seed = 1; seed <= 20; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const bool withReleases = seed % 2 == 0;
    std::weak_ptr<Platform> platform;
    {
      Stress stress(seed, withReleases);
      platform = stress.platform();
      stress.run();
      const auto owed = stress.expectWhatWasPromised();
      EXPECT_TRUE(withReleases || owed > workCount / 2) << "most services answer";
    }
    EXPECT_TRUE(platform.expired());
  }
}

}  // namespace
}  // namespace hlv::testing
