// What each primitive of the kit promises to threads that use it at the same moment, and the one
// member function that shares data between them without a lock.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "Async/Group.h"
#include "Async/Once.h"
#include "Async/OneShot.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Platform/SharedSlot.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Tests/Support/AtOnce.h"
#include "Tests/Support/FakeRecords.h"

namespace hlv::testing {
namespace {

TEST(LitmusTest, ABlockOfAGroupComesOnceAndSeesWhatWasWrittenBeforeEachLeft) {
  struct Round {
    Round() {
      group.enter();
      group.enter();
    }
    Group group;
    int first = 0, second = 0, blocks = 0;
  };
  atOnce<Round>({[](Round& round) {
                   round.first = 1;
                   round.group.leave();
                 },
                 [](Round& round) {
                   round.second = 1;
                   round.group.leave();
                 },
                 [](Round& round) {
                   round.group.notify(std::make_shared<ImmediateQueue>(), [&round] {
                     EXPECT_EQ(round.first + round.second, 2);
                     ++round.blocks;
                   });
                 }},
                [](Round& round) { EXPECT_EQ(round.blocks, 1); });
}

TEST(LitmusTest, OneReplyOfManyRunsTheCallbackAndNothingIsHeldAfterwards) {
  struct Round {
    std::shared_ptr<int> sum = std::make_shared<int>(0);
    std::function<void(int)> reply = oneShot([held = sum](int value) { *held += value; });
    std::function<void(int)> unused = reply;
  };
  const auto answer = [](Round& round) { round.reply(7); };
  atOnce<Round>({answer, answer, [](Round& round) { round.unused = nullptr; }}, [](Round& round) {
    EXPECT_EQ(*round.sum, 7);
    EXPECT_EQ(round.sum.use_count(), 1);
  });
}

TEST(LitmusTest, WhoeverPassesTheRunOnceGuardSeesWhatItsBodyWrote) {
  struct Round {
    Once once;
    int runs = 0;
  };
  const auto pass = [](Round& round) {
    round.once.run([&] {
      std::this_thread::yield();  // The others come to the guard meanwhile.
      ++round.runs;
    });
    EXPECT_EQ(round.runs, 1);
  };
  atOnce<Round>({pass, pass, pass}, [](Round&) {});
}

TEST(LitmusTest, AReaderOfASlotSeesAWholeValueAndTheLastOneStays) {
  struct Round {
    SharedSlot<std::pair<int, int>> slot;
  };
  const auto read = [](Round& round) {
    const auto value = round.slot.load();
    EXPECT_TRUE(!value || value->first == value->second);
  };
  const auto write = [](Round& round) {
    for (const int number : {1, 2}) {
      auto value = std::make_shared<std::pair<int, int>>();
      value->first = value->second = number;
      round.slot.store(std::move(value));
    }
  };
  atOnce<Round>({read, write, read, write},
                [](Round& round) { EXPECT_EQ(round.slot.load()->second, 2); });
}

TEST(LitmusTest, AnObserverSeesWhatWasWrittenBeforeItBeganAndKeepsNothingAfterItsEnd) {
  struct Round {
    std::shared_ptr<NotificationCenter> center = DefaultPlatform::make()->notificationCenter();
    std::shared_ptr<int> held = std::make_shared<int>(0);
    void observe() {
      for (int time = 0; time < 20; ++time) {
        const auto written = std::make_shared<int>(0);
        *written = 1;
        const auto observation = center->observe(
            "name", [written, held = held](const auto&) { EXPECT_EQ(*written, 1); });
        center->post({"name", {}});
      }
    }
  };
  atOnce<Round>({&Round::observe, &Round::observe},
                [](Round& round) { EXPECT_EQ(round.held.use_count(), 1); });
}

TEST(LitmusTest, ASearchFindsItsCardWhereverAnotherHasJustFoundOne) {
  using Synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer;
  struct Round {
    std::shared_ptr<Synchronizer> synchronizer = Synchronizer::initWithAPIManager(nullptr, nullptr);
    void search(std::size_t position) {
      const auto another = std::make_shared<FakeStoredCard>();
      another->external = "another";
      List<HLVSDKCreditCard> cards(position, another);
      cards.push_back(std::make_shared<FakeStoredCard>());
      EXPECT_TRUE(synchronizer->isCreditCardExistsInArray(
          cards, HLVSDKPLVPaymentInstrument::initWithPaymentInstrument(
                     std::make_shared<FakeInstrument>(), "default")));
    }
  };
  atOnce<Round>({[](Round& round) { round.search(0); }, [](Round& round) { round.search(4); }},
                [](Round&) {});
}

}  // namespace
}  // namespace hlv::testing
