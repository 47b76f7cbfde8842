// Enabling the kit: its configuration record, what it holds, and its version data.
#include <stdexcept>

#include "Public/HLVSDKPayleven.h"
#include "Public/HLVSDKPaylevenKitVersion.h"
#include "Public/HLVSDKPaymentManager.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

class EnablingTest : public KitTest {
 protected:
  EnablingTest() {
    guest->token = "tok";
    host->guest = guest;
  }
  ~EnablingTest() override { HLVSDKPayleven::resetSharedInstance(); }

  static std::shared_ptr<HLVSDKPayleven> enableWith(std::shared_ptr<Object> configuration) {
    HLVSDKPayleven::enableWithConfiguration(HLVSDKConfiguration::make(List<HLVSDKKitEntry>{
        HLVSDKKitEntry::make(HLVSDKPayleven::kitClass(), std::move(configuration))}));
    return HLVSDKPayleven::sharedInstance();
  }
  static std::shared_ptr<HLVSDKPayleven> enable(NullableString key = "key") {
    const auto configuration = HLVSDKMutablePaylevenKitConfiguration::make();
    configuration->setPaymentKey(key);
    return enableWith(configuration);
  }
};

TEST_F(EnablingTest, ReadsTheGuestRegistersTheKeyAndStartsNothing) {
  const auto kit = enable();
  EXPECT_EQ(host->takeTrace(), "host current guest\nprovider register 'key'");
  EXPECT_EQ(kit->currentGuest(), guest);
  EXPECT_EQ(kit->kitConfiguration()->paymentKey(), "key");
  EXPECT_EQ(kit->configuration()->kits()->size(), 1u);
  const auto manager = std::dynamic_pointer_cast<HLVSDKPaylevenPaymentInstrumentManager>(
      kit->paymentInstrumentManager());
  EXPECT_EQ(manager->paymentClient(), host->provider);
  EXPECT_EQ(manager->apiManager(), host->backend);
  EXPECT_EQ(manager->reachability(), host->network);
  kit->start();
  EXPECT_EQ(host->takeTrace(), "");
}

TEST_F(EnablingTest, OnlyTheFirstEnablingCountsUntilATestResetsIt) {
  HLVSDKPayleven::setSharedInstance(nullptr);
  EXPECT_EQ(HLVSDKPaymentManager::sharedManager(), nullptr);
  const auto first = enable("key");
  host->takeTrace();
  EXPECT_EQ(enable("other"), first);
  EXPECT_EQ(HLVSDKPayleven::sharedInstanceWithConfiguration(nullptr, nullptr), first);
  EXPECT_EQ(host->takeTrace(), "");
  HLVSDKPayleven::setSharedInstance(nullptr);
  EXPECT_EQ(enable("other"), nullptr) << "the guard has run";
  HLVSDKPayleven::resetSharedInstance();
  const auto second = enable("other");
  EXPECT_NE(second, first);
  EXPECT_NE(second->paymentInstrumentManager(), first->paymentInstrumentManager());
  EXPECT_EQ(host->takeTrace(), "host current guest\nprovider register 'other'");
  for (const auto& kit : {first, second}) {
    HLVSDKPayleven::setSharedInstance(kit);
    EXPECT_EQ(HLVSDKPaymentManager::sharedManager(), kit->paymentInstrumentManager());
  }
}

TEST_F(EnablingTest, WithoutAHostItSaysSoAndCanBeRepeated) {
  Host::install(nullptr);
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(enable(), nullptr);
  EXPECT_NE(::testing::internal::GetCapturedStderr().find("not enabled"), std::string::npos);
  Host::install(host);
  EXPECT_NE(enable(), nullptr);
  Host::install(nullptr);
  EXPECT_NE(enable(), nullptr) << "the instance that there is";
}

TEST_F(EnablingTest, AnExceptionOfTheHostPassesThroughAndEnablingCanBeRepeated) {
  struct Failing final : HLVSDKPaylevenKitConfiguration {
    mutable int asked = 0;
    NullableString paymentKey() const override {
      if (++asked > 1) throw std::runtime_error("no key after all");
      return "key";
    }
  };
  EXPECT_THROW(enableWith(std::make_shared<Failing>()), std::runtime_error);
  EXPECT_NE(enable(), nullptr);
}

using Configuration = HLVSDKPaylevenKitConfiguration;
using MutableConfiguration = HLVSDKMutablePaylevenKitConfiguration;

TEST(KitConfigurationTest, TheBlockFillsInARecordThatComesOutImmutable) {
  std::weak_ptr<MutableConfiguration> seen;
  const auto configuration = Configuration::configurationWithBlock([&](const auto& mutableOne) {
    mutableOne->setPaymentKey("key");
    EXPECT_EQ(mutableOne->Configuration::paymentKey(), std::nullopt)
        << "the mutable record keeps a key of its own";
    EXPECT_EQ(std::dynamic_pointer_cast<MutableConfiguration>(mutableOne->copyWithZone()), nullptr);
    seen = mutableOne;
  });
  EXPECT_EQ(configuration->paymentKey(), "key");
  EXPECT_EQ(std::dynamic_pointer_cast<MutableConfiguration>(configuration), nullptr);
  EXPECT_TRUE(seen.expired());
  const auto copy = std::dynamic_pointer_cast<Configuration>(configuration->copyWithZone());
  EXPECT_NE(copy, configuration);
  EXPECT_EQ(copy->paymentKey(), "key");
  EXPECT_EQ(Configuration::configurationWithBlock(nullptr)->paymentKey(), std::nullopt);
  EXPECT_EQ(Configuration::initWithConfiguration(nullptr)->paymentKey(), std::nullopt);
}

TEST(KitVersionTest, TheExportedDataHasItsExactBytes) {
  EXPECT_EQ(HLVSDKPaylevenKitVersionNumber, 1.0);
  EXPECT_STREQ(reinterpret_cast<const char*>(HLVSDKPaylevenKitVersionString),
               "@(#)PROGRAM:HLVSDKPaylevenKit  PROJECT:HLVSDKPaylevenKit-1\n");
}

}  // namespace
}  // namespace hlv::testing
