// The whole kit on the default platform, with operations, answers, notifications and releases on
// many threads at once. What happens is a matter of the seed; in which order, of the scheduler.
#include <gtest/gtest.h>

#include <asio/post.hpp>
#include <asio/thread_pool.hpp>
#include <atomic>
#include <deque>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "Platform/SharedSlot.h"
#include "Public/HLVSDKPaylevenKit.h"
#include "Tests/Support/Answer.h"
#include "Tests/Support/ScriptedHost.h"

namespace hlv::testing {
namespace {

using Manager = HLVSDKPaylevenPaymentInstrumentManager;
using Synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer;

constexpr std::size_t workCount = 1000;
constexpr std::size_t starterCount = 4;

std::uint32_t operationOf(const CallOf& of) {
  const auto text = of.guest ? (*of.guest)->email() : *of.user;
  return static_cast<std::uint32_t>(std::stoul(text.value_or("0")));
}

/// A guest's address and token are the number of the operation that it takes part in; that is how a
/// service knows whose call it serves.
std::shared_ptr<FakeGuest> guestOf(std::size_t operation, bool hasToken) {
  auto guest = std::make_shared<FakeGuest>();
  guest->emailText = std::to_string(operation);
  if (hasToken) guest->token = guest->emailText;
  guest->cards = List<HLVSDKCreditCard>{std::make_shared<FakeStoredCard>()};
  return guest;
}

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
  Stress(std::uint32_t seed, bool withReleases) : seed_(seed) {
    host_->guest = guestOf(0, true);
    host_->requestBody = nullptr;  // What a request was made of is kept for one thread.
    host_->forEachService([this](auto& held) {
      held.answerInside = [this](const auto& completion, const CallOf& of) {
        this->answer(completion, of);
      };
    });
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
    threads_.join();
    Host::install(nullptr);
    Platform::install(nullptr);
  }
  Stress(const Stress&) = delete;
  Stress& operator=(const Stress&) = delete;

  std::weak_ptr<Platform> platform() const { return platform_; }

  void run() {
    renewKit();
    renewManager();
    for (std::size_t first = 1; first <= starterCount; ++first) {
      post([this, first] {
        for (auto number = first; number < workCount; number += starterCount) begin(number);
      });
    }
    platform_->runUntil([this] { return isSettled(); });
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
  /// Runs it on one of the threads on which the app begins its operations, and the services answer.
  void post(std::function<void()> work) {
    ++posted_;
    ++unfinished_;
    asio::post(threads_, [this, work = std::move(work)]() mutable {
      work();
      work = nullptr;
      if (--unfinished_ == 0) platform_->mainQueue()->async([] {});
    });
  }

  /// Whether nothing runs, nothing waits, and nothing came while that was asked.
  bool isSettled() const {
    const std::size_t posted = posted_;
    return unfinished_ == 0 && platform_->isIdle() && posted_ == posted;
  }

  /// Answers a call with objects of its own, or with an error in their place. How, depends on the
  /// seed, the operation and the service, and on nothing else.
  template <class Completion>
  void answer(const Completion& completion, const CallOf& of) {
    const auto operation = operationOf(of);
    std::minstd_rand plan(seed_ * 7919U + operation * 31U + static_cast<std::uint32_t>(of.service));
    plan.discard(3);
    const auto oneIn = [&](std::uint32_t chances) { return plan() % chances == 0; };
    if (oneIn(25)) {
      works_[operation].unanswered = true;
      return;
    }
    Answer answer;
    const ErrorPtr error = oneIn(8) ? makeError("refused") : nullptr;
    if (!error) {
      answer = {
          .token = of.user ? *of.user : std::nullopt,
          .instruments = List<PLVCreditCardPaymentInstrument>{std::make_shared<FakeInstrument>()},
          .cards = List<HLVSDKCreditCard>(),
          .guest = guestOf(operation, true),
          .card = std::make_shared<FakeStoredCard>()};
    }
    const auto say = [=] { complete(completion, answer, error); };
    oneIn(4) ? say() : post(say);
    // An update's completion is the app's own: no kit stands before it and ignores a second answer.
    if (of.service != Service::updateCard && oneIn(5)) post(say);
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

  void notify(std::string name, Dictionary info) {
    platform_->notificationCenter()->post({std::move(name), std::move(info)});
  }

  void perform(std::size_t number) {
    switch (works_[number].step) {
      case Step::enterForeground:
        return notify(UIApplicationWillEnterForegroundNotification, {});
      case Step::authorize:
        if (const auto kit = HLVSDKPayleven::sharedInstance()) {
          kit->setCurrentGuest(guestOf(number, true));
          kit->setUpPaymentInstrumentsSynchronizer();
        }
        return notify("authorization", {{"isAuthorized", true}});
      case Step::becomeReachable:
        return notify("reachability", {{"state", 1}, {"previous", 0}});
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
    const auto guest = guestOf(number, work.step != Step::addFirst);
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
  SharedSlot<Manager> manager_;
  const std::uint32_t seed_;
  const std::shared_ptr<ScriptedHost> host_ = std::make_shared<ScriptedHost>(Recording::off);
  std::atomic<std::size_t> posted_{0}, unfinished_{0};
  asio::thread_pool threads_{starterCount + 8};
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
