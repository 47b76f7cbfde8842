// Groups, the run-once guard, single answers and the small value types.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <string_view>
#include <thread>
#include <type_traits>
#include <vector>

#include "Async/Group.h"
#include "Async/Once.h"
#include "Async/OneShot.h"
#include "Platform/SharedSlot.h"
#include "Tests/Support/ManualPlatform.h"
#include "Values/NullableString.h"
#include "Values/Secret.h"
#include "Values/Value.h"

namespace hlv::testing {
namespace {

using ManualQueue = ManualPlatform::ManualQueue;

TEST(GroupTest, PostsWhenTheLastHasLeftAndOnceOnly) {
  const auto queue = std::make_shared<ManualQueue>("queue");
  Group group;
  group.enter();
  group.enter();
  group.notify(queue, [] {});
  group.leave();
  EXPECT_EQ(queue->waiting(), 0u);
  group.leave();
  EXPECT_EQ(queue->waiting(), 1u);
  group.leave();  // A host that answers too often.
  group.enter();
  group.leave();
  EXPECT_EQ(queue->waiting(), 1u);
  group.notify(queue, [] {});
  EXPECT_EQ(queue->waiting(), 2u) << "an empty group posts at once";
}

TEST(GroupTest, OneThatNeverEmptiesIsFreedWithWhatItHolds) {
  const auto held = std::make_shared<int>();
  {
    Group group;
    group.enter();
    group.notify(std::make_shared<ManualQueue>("queue"), [held] {});
    EXPECT_EQ(held.use_count(), 2);
  }
  EXPECT_EQ(held.use_count(), 1);
}

TEST(OnceTest, RunsOnceAmongThreadsThatAllWaitForIt) {
  Once once;
  int runs = 0;  // Without a lock: whoever comes later sees what the body wrote.
  std::promise<void> began;
  std::atomic<bool> ended{false};
  std::atomic<int> waiting{0};
  std::thread first([&] {
    once.run([&] {
      began.set_value();
      while (waiting < 7) std::this_thread::yield();
      // The others are at the guard or about to be; none of them may pass it.
      for (int i = 0; i < 1000; ++i) std::this_thread::yield();
      ++runs;
      ended = true;
    });
  });
  began.get_future().wait();
  std::vector<std::thread> others;
  for (int i = 0; i < 7; ++i) {
    others.emplace_back([&] {
      ++waiting;
      once.run([&] { ++runs; });
      EXPECT_TRUE(ended);
    });
  }
  first.join();
  for (auto& thread : others) thread.join();
  EXPECT_EQ(runs, 1);
  once.reset();
  once.run([&] {
    ++runs;
    once.run([&] { ++runs; });  // Comes back to its own guard.
  });
  EXPECT_EQ(runs, 2);
}

TEST(SharedSlotTest, WhatIsReplacedIsLetGoOutsideTheLock) {
  SharedSlot<void> slot;
  int value = 0;
  bool cameBack = false;
  slot.store({&value, [&](void*) { cameBack = slot.load() == nullptr; }});
  slot.store(nullptr);
  EXPECT_TRUE(cameBack);
}

TEST(OneShotTest, RunsForTheFirstReplyAndReleasesWhatItHeld) {
  const auto held = std::make_shared<int>();
  int sum = 0;
  const auto answer = oneShot([held, &sum](int value) { sum += value; });
  const auto copy = answer;
  copy(1);
  EXPECT_EQ(held.use_count(), 1);
  answer(2);
  EXPECT_EQ(sum, 1);
}

TEST(SecretTest, LeavesNoCharacterInItsPlace) {
  struct Record {
    NullableString number() const { return "4111 1111"; }
  };
  alignas(Secret) unsigned char place[sizeof(Secret)] = {};
  auto* secret = new (place) Secret(std::make_shared<Record>(), &Record::number);
  const auto holdsNumber = [&] {
    // The place holds an address too, in which a single byte may read as a digit.
    constexpr std::string_view group = "1111";
    return std::search(std::begin(place), std::end(place), group.begin(), group.end()) !=
           std::end(place);
  };
  EXPECT_TRUE(holdsNumber());
  secret->~Secret();
  EXPECT_FALSE(holdsNumber());
}

TEST(NullableStringTest, ANullPointerIsAMissingString) {
  EXPECT_EQ(NullableString(nullptr), std::nullopt);
  EXPECT_EQ(NullableString(std::getenv("HLV_NOBODY_SETS_THIS")), std::nullopt);
  EXPECT_EQ(NullableString(), std::optional<std::string>());
  EXPECT_TRUE(Value(std::getenv("HLV_NOBODY_SETS_THIS")).isNull());
}

TEST(NullableStringTest, MissingAndEmptyAreDifferentThings) {
  EXPECT_EQ(length(std::nullopt), 0u);
  EXPECT_FALSE(isEqualToString(std::nullopt, std::nullopt));
  EXPECT_FALSE(isEqualToString("", std::nullopt));
  EXPECT_TRUE(isEqualToString("", ""));
  EXPECT_TRUE(hasSuffix("1111", ""));
  EXPECT_FALSE(hasSuffix(std::nullopt, ""));
  EXPECT_FALSE(hasSuffix("1111", std::nullopt));
}

TEST(ValueTest, ConversionsAreExactOrDoNotCompile) {
  EXPECT_TRUE(Value(nullptr).isNull());
  EXPECT_EQ(Value(4'294'967'295U), Value(4'294'967'295LL));
  EXPECT_EQ(std::get<std::uint64_t>(Value(SIZE_MAX).storage()), SIZE_MAX);
  EXPECT_EQ(Value(0.5F), Value(0.5));
  EXPECT_EQ(Value("text"), Value(std::string("text")));
  static_assert(!std::is_convertible_v<const Object*, Value>);
  static_assert(!std::is_convertible_v<char, Value>);
  static_assert(!std::is_convertible_v<long double, Value>);
}

TEST(ValueTest, OnlyNumbersAndBooleansReadAsNumbers) {
  EXPECT_EQ(Value(true).integerValue(), 1);
  EXPECT_EQ(Value(-3).integerValue(), -3);
  EXPECT_EQ(Value(2.9).integerValue(), 2);
  EXPECT_EQ(Value(1e300).integerValue(), 0);
  EXPECT_EQ(Value("7").integerValue(), 0);
  EXPECT_TRUE(Value(0.5).boolValue());
  EXPECT_FALSE(Value().boolValue());
  EXPECT_TRUE(Value(NullableString()).isNull());
  EXPECT_TRUE(valueForKey({{"key", 1}}, std::nullopt).isNull());
}

}  // namespace
}  // namespace hlv::testing
