// The run-once guard, slots and what converts to a value.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <type_traits>

#include "Async/Once.h"
#include "Platform/Platform.h"
#include "Platform/SharedSlot.h"
#include "Values/Error.h"
#include "Values/NullableString.h"
#include "Values/Value.h"

namespace hlv::testing {
namespace {

TEST(OnceTest, ABodyMayComeBackToItsGuardWhichCanBeSetBack) {
  Once once;
  int runs = 0;
  const auto comesBack = [&] {
    ++runs;
    once.run([&] { ++runs; });
  };
  once.run(comesBack);
  once.run(comesBack);
  EXPECT_EQ(runs, 1);
  once.reset();
  once.run(comesBack);
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

TEST(NullableStringTest, ANullPointerIsAMissingStringOrDoesNotCompile) {
  EXPECT_EQ(NullableString(nullptr), std::nullopt);
  EXPECT_EQ(NullableString(std::getenv("HLV_NOBODY_SETS_THIS")), std::nullopt);
  EXPECT_EQ(NullableString(), std::optional<std::string>());
  const std::string text = "text";
  EXPECT_TRUE(NullableString(text) == text && NullableString() != text &&
              NullableString("other") != text);
  EXPECT_FALSE(NullableString("a") == NullableString("b"));
  EXPECT_TRUE(Value(std::getenv("HLV_NOBODY_SETS_THIS")).isNull());
  static_assert(!std::is_constructible_v<Text, char*>);
  static_assert(!std::is_constructible_v<Text, std::nullptr_t>);
  static_assert(std::is_same_v<decltype(&Error::domain), Text (Error::*)() const>);
  static_assert(std::is_same_v<decltype(&Queue::label), Text (Queue::*)() const>);
  static_assert(!std::is_invocable_v<decltype(&Platform::makeSerialQueue), Platform, char*>);
  static_assert(std::is_same_v<Dictionary::key_type, Text>);
  EXPECT_EQ(NullableString().value_or("text"), "text");
  const auto withPointer = [](auto missing) {
    return requires { missing.value_or(std::getenv("")); };
  };
  EXPECT_FALSE(withPointer(NullableString()));
}

TEST(ValueTest, ConversionsAreExactOrDoNotCompile) {
  EXPECT_TRUE(Value(nullptr).isNull());
  EXPECT_EQ(Value(4'294'967'295U), Value(4'294'967'295LL));
  EXPECT_EQ(std::get<std::uint64_t>(Value(SIZE_MAX).storage()), SIZE_MAX);
  EXPECT_EQ(Value(0.5F), Value(0.5));
  EXPECT_TRUE(Value(0.5).boolValue() && !Value(0.0).boolValue());
  EXPECT_EQ(*Value("text").string(), "text");
  EXPECT_EQ(Value(Array{"text"}).array()->size(), 1U);
  static_assert(!std::is_convertible_v<const Object*, Value>);
  static_assert(!std::is_convertible_v<char, Value>);
  static_assert(!std::is_convertible_v<long double, Value>);
}

}  // namespace
}  // namespace hlv::testing
