// The contract of a notification centre, on the default platform's.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Platform/Default/DefaultPlatform.h"

namespace hlv::testing {
namespace {

class NotificationCenterTest : public ::testing::Test {
 protected:
  std::unique_ptr<Observation> observe(const std::string& mark) {
    return center->observe("name", [this, mark](const Notification&) { received += mark; });
  }

  const std::shared_ptr<DefaultPlatform> platform = DefaultPlatform::make();
  const std::shared_ptr<NotificationCenter> center = platform->notificationCenter();
  std::string received;
};

TEST_F(NotificationCenterTest, DeliversInOrderByNameBeforePostReturns) {
  auto first = observe("a");
  const auto second = observe("b");
  center->post({"name", {}});
  center->post({"other", {}});
  center->post({nullptr, {}});
  first.reset();
  center->post({"name", {}});
  EXPECT_EQ(received, "abb") << "an observation ends with its object";
  EXPECT_EQ(center->observe(std::nullopt, [](const Notification&) {}), nullptr);
}

TEST_F(NotificationCenterTest, ObserversMayComeGoAndPostDuringAPost) {
  std::unique_ptr<Observation> self, later, added;
  self = center->observe("name", [&](const Notification&) {
    received += "a";
    added = observe("new");
    later.reset();
    self.reset();
    center->post({"other", {}});
  });
  later = observe("removed before its turn");
  const auto other = center->observe("other", [&](const Notification&) { received += "b"; });
  center->post({"name", {}});
  EXPECT_EQ(received, "ab");
  center->post({"name", {}});
  EXPECT_EQ(received, "abnew");
}

TEST_F(NotificationCenterTest, AnObservationMayOutliveItsCentreAndKeepsNothingOfIt) {
  auto alone = DefaultPlatform::make();
  const auto held = std::make_shared<int>();
  auto observation = alone->notificationCenter()->observe("name", [held](const auto&) {});
  const std::weak_ptr<void> seen = alone->notificationCenter();
  alone.reset();
  EXPECT_TRUE(seen.expired());
  observation.reset();
  EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace hlv::testing
