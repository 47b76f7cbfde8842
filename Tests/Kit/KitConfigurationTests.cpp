// The kit's configuration record and the version data.
#include "Public/HLVSDKPaylevenKitConfiguration.h"
#include "Public/HLVSDKPaylevenKitVersion.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

using Configuration = HLVSDKPaylevenKitConfiguration;
using MutableConfiguration = HLVSDKMutablePaylevenKitConfiguration;

TEST(KitConfigurationTest, TheBlockFillsInARecordThatComesOutImmutable) {
  std::weak_ptr<MutableConfiguration> seen;
  const auto configuration = Configuration::configurationWithBlock([&](const auto& mutableOne) {
    mutableOne->setPaymentKey("key");
    EXPECT_EQ(mutableOne->Configuration::paymentKey(), std::nullopt)
        << "the mutable record keeps a key of its own";
    seen = mutableOne;
  });
  EXPECT_EQ(configuration->paymentKey(), "key");
  EXPECT_EQ(std::dynamic_pointer_cast<MutableConfiguration>(configuration), nullptr);
  EXPECT_TRUE(seen.expired());
  EXPECT_EQ(Configuration::configurationWithBlock(nullptr)->paymentKey(), std::nullopt);
  EXPECT_EQ(Configuration::initWithConfiguration(nullptr)->paymentKey(), std::nullopt);
}

TEST(KitConfigurationTest, ACopyIsAnotherImmutableRecordWithTheSameKey) {
  const auto mutableOne = MutableConfiguration::make();
  mutableOne->setPaymentKey("key");
  const auto copy = std::dynamic_pointer_cast<Configuration>(mutableOne->copyWithZone());
  const auto copyOfCopy = std::dynamic_pointer_cast<Configuration>(copy->copyWithZone());
  EXPECT_EQ(std::dynamic_pointer_cast<MutableConfiguration>(copy), nullptr);
  EXPECT_NE(copyOfCopy, copy);
  EXPECT_EQ(copyOfCopy->paymentKey(), "key");
}

TEST(KitVersionTest, TheExportedDataHasItsExactBytes) {
  EXPECT_EQ(HLVSDKPaylevenKitVersionNumber, 1.0);
  EXPECT_STREQ(reinterpret_cast<const char*>(HLVSDKPaylevenKitVersionString),
               "@(#)PROGRAM:HLVSDKPaylevenKit  PROJECT:HLVSDKPaylevenKit-1\n");
}

}  // namespace
}  // namespace hlv::testing
