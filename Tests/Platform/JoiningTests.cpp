// Groups, the run-once guard, single answers and what converts to a value.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <thread>
#include <type_traits>
#include <vector>

#include "Async/Group.h"
#include "Async/Once.h"
#include "Async/OneShot.h"
#include "Platform/SharedSlot.h"
#include "Tests/Support/ManualPlatform.h"
#include "Values/Error.h"
#include "Values/NullableString.h"
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

TEST(NullableStringTest, ANullPointerIsAMissingStringOrDoesNotCompile) {
  EXPECT_EQ(NullableString(nullptr), std::nullopt);
  EXPECT_EQ(NullableString(std::getenv("HLV_NOBODY_SETS_THIS")), std::nullopt);
  EXPECT_EQ(NullableString(), std::optional<std::string>());
  EXPECT_TRUE(Value(std::getenv("HLV_NOBODY_SETS_THIS")).isNull());
  static_assert(!std::is_constructible_v<Text, char*>);
  static_assert(!std::is_constructible_v<Text, std::nullptr_t>);
  static_assert(std::is_same_v<decltype(&Error::domain), Text (Error::*)() const>);
  static_assert(std::is_same_v<decltype(&Queue::label), Text (Queue::*)() const>);
  static_assert(!std::is_invocable_v<decltype(&Platform::makeSerialQueue), Platform, char*>);
  static_assert(std::is_same_v<Dictionary::key_type, Text>);
  EXPECT_EQ(NullableString().value_or("text"), "text");
  const auto withPointer = [](auto text) {
    return requires { text.value_or(std::getenv("")); };
  };
  EXPECT_FALSE(withPointer(NullableString()));
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

}  // namespace
}  // namespace hlv::testing
