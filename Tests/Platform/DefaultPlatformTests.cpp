// The platform on Linux: pumping, serial queues, and no thread before there is work.
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <iterator>
#include <semaphore>
#include <stdexcept>
#include <string>
#include <thread>

#include "Platform/Default/DefaultPlatform.h"

namespace hlv::testing {
namespace {

std::ptrdiff_t threadsOfThisProcess() {
  using std::filesystem::directory_iterator;
  return std::distance(directory_iterator("/proc/self/task"), directory_iterator());
}

class DefaultPlatformTest : public ::testing::Test {
 protected:
  const std::shared_ptr<DefaultPlatform> platform = DefaultPlatform::make();
};

TEST_F(DefaultPlatformTest, TheMainThreadIsTheProcesssUnlessAnotherIsAdopted) {
  EXPECT_EQ(Platform::current(), DefaultPlatform::shared());
  EXPECT_TRUE(platform->isMainThread());
  std::thread([&] {
    EXPECT_FALSE(platform->isMainThread());
    platform->adoptMainThread();
    EXPECT_TRUE(platform->isMainThread());
  }).join();
  EXPECT_FALSE(platform->isMainThread());
}

TEST_F(DefaultPlatformTest, TheMainQueueRunsOnlyWhenPumpedAndWithWhatItsBlocksPost) {
  std::string order;
  const auto queue = platform->mainQueue();
  queue->async([&] {
    order += "a";
    queue->async([&] { order += "c"; });
    EXPECT_FALSE(platform->isIdle());
  });
  queue->async([&] { order += "b"; });
  EXPECT_EQ(order, "");
  EXPECT_FALSE(platform->isIdle());
  EXPECT_EQ(platform->runPending(), 3u);
  EXPECT_EQ(order, "abc");
  EXPECT_TRUE(platform->isIdle());
  EXPECT_EQ(platform->runPending(), 0u);
  EXPECT_EQ(queue->label(), "main");
}

TEST_F(DefaultPlatformTest, AnExceptionOfABlockPassesThroughAndTheQueueGoesOn) {
  platform->mainQueue()->async([] { throw std::runtime_error("of the app"); });
  platform->mainQueue()->async([] {});
  EXPECT_THROW(platform->runPending(), std::runtime_error);
  EXPECT_EQ(platform->runPending(), 1u);
  EXPECT_TRUE(platform->isIdle());
}

TEST_F(DefaultPlatformTest, ABlockOfTheMainQueueMayPumpItAndWait) {
  const auto queue = platform->makeSerialQueue("label");
  bool inner = false;
  bool outer = false;
  platform->mainQueue()->async([&] {
    platform->mainQueue()->async([&] { inner = true; });
    EXPECT_EQ(platform->runPending(), 1u);
    std::atomic<bool> ran{false};
    queue->async([&] { ran = true; });
    platform->runUntil([&] { return ran.load(); });
    queue->async([&] { outer = true; });
  });
  platform->runUntil([&] { return inner && platform->isIdle(); });
  EXPECT_TRUE(outer);
}

TEST_F(DefaultPlatformTest, AnAppsOwnLoopIsWokenByEveryPostWhenItsBlockCanRun) {
  std::size_t ran = 0;
  platform->setPostHook([&] { ran += platform->runPending(); });
  platform->mainQueue()->async([] {});
  platform->mainQueue()->async([] {});
  EXPECT_EQ(ran, 2u);
  platform->setPostHook(nullptr);
  platform->mainQueue()->async([] {});
  EXPECT_EQ(ran, 2u);
}

TEST_F(DefaultPlatformTest, ASerialQueueRunsItsBlocksInOrderOneAtATimeOffTheMainThread) {
  const auto before = threadsOfThisProcess();
  const auto queue = platform->makeSerialQueue("label");
  EXPECT_EQ(queue->label(), "label");
  const auto another = platform->makeSerialQueue("another");
  EXPECT_EQ(threadsOfThisProcess(), before) << "none before there is work";
  std::string order;  // Written without a lock: each block sees what the one before wrote.
  std::promise<void> isAsked, othersRan;
  std::atomic<std::size_t> asked{0};
  queue->async([&, wait = othersRan.get_future().share()] {
    wait.wait();  // The queue is busy for as long as the other one needs.
    order += 'a';
  });
  for (const char mark : std::string("bcdefgh")) {
    queue->async([&, mark] {
      order += mark;
      EXPECT_FALSE(platform->isMainThread());
      for (int i = 0; i < 1000 && asked < 14; ++i) std::this_thread::yield();
    });
  }
  queue->async([&] { queue->async([&] { order += "!"; }); });
  another->async([] {});
  another->async([&, wait = isAsked.get_future().share()] {
    wait.wait();
    EXPECT_EQ(order, "") << "a second thread is free, and takes nothing of a busy queue";
    char name[16] = {};
    ::pthread_getname_np(::pthread_self(), name, sizeof name);
    EXPECT_STREQ(name, "serial-queue");
    othersRan.set_value();
  });
  platform->runUntil([&] {
    if (++asked == 1) isAsked.set_value();
    return platform->isIdle();
  });
  EXPECT_EQ(order, "abcdefgh!");
  EXPECT_LE(asked.load(), 1U + 12U) << "before the first wait, and after every block";
}

TEST_F(DefaultPlatformTest, AQueueAndItsPlatformMayBeFreedInABlock) {
  auto alone = DefaultPlatform::make();
  auto queue = alone->makeSerialQueue("label");
  const std::weak_ptr<void> seenPlatform = alone, seenQueue = queue;
  std::promise<bool> freed;
  auto* const raw = queue.get();
  raw->async([&, ownPlatform = std::move(alone), ownQueue = std::move(queue)]() mutable {
    ownQueue.reset();
    ownPlatform.reset();
    freed.set_value(seenPlatform.expired() && seenQueue.expired());
  });
  EXPECT_TRUE(freed.get_future().get());
}

TEST_F(DefaultPlatformTest, BlocksThatNeverRanAreFreedWithThePlatform) {
  auto alone = DefaultPlatform::make();
  const auto held = std::make_shared<int>();
  const auto queue = alone->makeSerialQueue("label");
  std::promise<void> mayRun;
  std::promise<void> running;
  queue->async([&running, wait = mayRun.get_future().share()] {
    running.set_value();
    wait.wait();
  });
  running.get_future().wait();
  queue->async([held, queue] {});
  const auto main = alone->mainQueue();
  main->async([held, main] {});
  // The platform goes away while a block still runs, and waits for it.
  std::thread release([&] { mayRun.set_value(); });
  alone.reset();
  release.join();
  queue->async([held] {});  // Goes nowhere.
  main->async([held] {});
  EXPECT_EQ(held.use_count(), 1);
}

TEST(DefaultPlatformExitTest, TheTwoSharedThreadsEndBeforeWhatIsOlderThanThePlatform) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // In a process that has no platform yet.
  const auto exitWithTheNumberOfEndedThreads = [] {
    static std::atomic<int> ended{0};
    struct Ending {
      ~Ending() { ++ended; }
    };
    std::atexit([] { std::_Exit(ended); });
    const auto platform = DefaultPlatform::shared();
    std::counting_semaphore<> entered(0), left(0);
    for (int queue = 0; queue < 3; ++queue) {
      platform->makeSerialQueue("label")->async([&] {
        static thread_local Ending ending;
        entered.release();
        left.acquire();
      });
    }
    for (int thread = 0; thread < 2; ++thread) entered.acquire();
    for (int i = 0; i < 1000; ++i) std::this_thread::yield();  // A third would enter meanwhile.
    left.release(3);
    std::exit(EXIT_SUCCESS);
  };
  EXPECT_EXIT(exitWithTheNumberOfEndedThreads(), ::testing::ExitedWithCode(2), "");
}

}  // namespace
}  // namespace hlv::testing
