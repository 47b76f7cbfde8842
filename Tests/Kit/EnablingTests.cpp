// Enabling the kit, and what its notifications start.
#include "Public/HLVSDKPayleven.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

/// Counts the requests that reach it.
struct CountingSynchronizer final : HLVSDKPaymentInstrumentsSynchronizer {
  int requests = 0;
  std::shared_ptr<HLVSDKGuest> lastGuest;
  void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>& guest) override {
    ++requests;
    lastGuest = guest;
  }
  void synchronizePaymentInstrumentsForGuest(const std::shared_ptr<HLVSDKGuest>&,
                                             HLVSDKSuccessCompletion) override {
    ADD_FAILURE() << "the kit asks without a completion";
  }
};

class EnablingTest : public KitTest {
 protected:
  EnablingTest() {
    guest->token = "tok";
    host->guest = guest;
  }
  ~EnablingTest() override { HLVSDKPayleven::resetSharedInstance(); }

  static std::shared_ptr<Object> withKey(NullableString key) {
    return HLVSDKPaylevenKitConfiguration::configurationWithBlock(
        [&](const auto& configuration) { configuration->setPaymentKey(key); });
  }
  static std::shared_ptr<HLVSDKKitEntry> entry(std::shared_ptr<Object> configuration,
                                               HLVSDKKitClass kit = HLVSDKPayleven::kitClass()) {
    return std::make_shared<FakeKitEntry>(kit, std::move(configuration));
  }
  static std::shared_ptr<FakeConfiguration> kits(NullableList<HLVSDKKitEntry> entries) {
    return std::make_shared<FakeConfiguration>(std::move(entries));
  }
  std::shared_ptr<HLVSDKPayleven> enable(NullableString key = "key") {
    HLVSDKPayleven::enableWithConfiguration(kits(List<HLVSDKKitEntry>{entry(withKey(key))}));
    return HLVSDKPayleven::sharedInstance();
  }
  std::shared_ptr<CountingSynchronizer> enableCounting() {
    const auto synchronizer = std::make_shared<CountingSynchronizer>();
    enable()->setPaymentInstrumentsSynchronizer(synchronizer);
    return synchronizer;
  }
  void post(const char* name, Dictionary userInfo = {}) {
    platform->notificationCenter()->post({name, std::move(userInfo)});
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

TEST_F(EnablingTest, TheFirstConfigurationFaultIsTheOneReportedAndNothingIsCreated) {
  const HLVSDKKitClass other(&guest);
  const auto missing = "assert \"Configuration must have HLVSDKPaylevenKit in kits array\"";
  const auto wrongClass =
      "assert \"Configuration for PaylevenKit must be kind of HLVSDKPaylevenKitConfiguration "
      "class\"";
  const auto noKey = "assert \"Configuration for PaylevenKit must have payment key\"";
  const std::pair<std::shared_ptr<FakeConfiguration>, const char*> rows[] = {
      {nullptr, missing},
      {kits(std::nullopt), missing},
      {kits(List<HLVSDKKitEntry>{nullptr, entry(withKey("key"), other)}), missing},
      {kits(List<HLVSDKKitEntry>{entry(nullptr)}), wrongClass},
      {kits(List<HLVSDKKitEntry>{entry(guest)}), wrongClass},
      {kits(List<HLVSDKKitEntry>{entry(withKey(std::nullopt))}), noKey},
      {kits(List<HLVSDKKitEntry>{entry(withKey("key")), entry(nullptr)}), wrongClass}};
  for (const auto& [configuration, assertion] : rows) {
    HLVSDKPayleven::enableWithConfiguration(configuration);
    EXPECT_EQ(host->takeTrace(), assertion);
    EXPECT_EQ(HLVSDKPayleven::sharedInstance(), nullptr);
  }
}

TEST_F(EnablingTest, TheLastEntryOfTheReceiversClassCounts) {
  const HLVSDKKitClass subclass(&guest);
  const auto configuration = kits(List<HLVSDKKitEntry>{
      entry(withKey("first")), entry(withKey("last")), entry(withKey("sub"), subclass)});
  HLVSDKPayleven::enableWithConfiguration(configuration);
  EXPECT_EQ(HLVSDKPayleven::sharedInstance()->kitConfiguration()->paymentKey(), "last");
  HLVSDKPayleven::resetSharedInstance();
  HLVSDKPayleven::enableWithConfiguration(configuration, subclass);
  EXPECT_EQ(HLVSDKPayleven::sharedInstance()->kitConfiguration()->paymentKey(), "sub");
}

TEST_F(EnablingTest, AnEmptyKeyAndAMutableRecordAreAccepted) {
  EXPECT_NE(enable(""), nullptr);
  EXPECT_EQ(host->takeTrace(), "host current guest\nprovider register ''");
  HLVSDKPayleven::resetSharedInstance();
  const auto mutableOne = HLVSDKMutablePaylevenKitConfiguration::make();
  mutableOne->setPaymentKey("key");
  HLVSDKPayleven::enableWithConfiguration(kits(List<HLVSDKKitEntry>{entry(mutableOne)}));
  EXPECT_EQ(HLVSDKPayleven::sharedInstance()->kitConfiguration(), mutableOne);
}

TEST_F(EnablingTest, OnlyTheFirstEnablingCountsUntilATestResetsIt) {
  const auto first = enable("key");
  host->takeTrace();
  EXPECT_EQ(enable("other"), first);
  EXPECT_EQ(host->takeTrace(), "");
  HLVSDKPayleven::setSharedInstance(nullptr);
  EXPECT_EQ(enable("other"), nullptr) << "the guard has run";
  HLVSDKPayleven::resetSharedInstance();
  const auto second = enable("other");
  EXPECT_NE(second, first);
  EXPECT_NE(second->paymentInstrumentManager(), first->paymentInstrumentManager());
  EXPECT_EQ(host->takeTrace(), "host current guest\nprovider register 'other'");
}

TEST_F(EnablingTest, ComingToTheForegroundSynchronisesTheGuestReadAtEnabling) {
  const auto synchronizer = enableCounting();
  host->guest = updatedGuest;
  post(UIApplicationWillEnterForegroundNotification);
  EXPECT_EQ(synchronizer->requests, 1);
  EXPECT_EQ(synchronizer->lastGuest, guest);
  for (const NullableString& noToken : {NullableString(), NullableString("")}) {
    guest->token = noToken;
    post(UIApplicationWillEnterForegroundNotification);
  }
  guest->token = "tok";
  host->session->authorized = false;
  post(UIApplicationWillEnterForegroundNotification);
  host->session = nullptr;
  post(UIApplicationWillEnterForegroundNotification);
  EXPECT_EQ(synchronizer->requests, 1);
}

TEST_F(EnablingTest, AuthorisationSynchronisesByTheNotificationAlone) {
  const auto synchronizer = enableCounting();
  host->session = nullptr;
  post("authorization", {{"isAuthorized", false}});
  post("authorization");
  EXPECT_EQ(synchronizer->requests, 0);
  post("authorization", {{"isAuthorized", true}});
  post("authorization", {{"isAuthorized", 1}});
  EXPECT_EQ(synchronizer->requests, 2);
}

TEST_F(EnablingTest, OnlyAChangeIntoAReachableStateSynchronises) {
  const auto synchronizer = enableCounting();
  const struct {
    int state, previous;
    bool authorized;
    int requests;
  } rows[] = {{2, 1, true, 1},   {0, 1, true, 0},   {1, 1, true, 0}, {1, 0, true, 1},
              {1, 257, true, 0}, {256, 1, true, 0}, {2, 1, false, 0}};
  for (const auto& row : rows) {
    synchronizer->requests = 0;
    host->session->authorized = row.authorized;
    post("reachability", {{"state", row.state}, {"previous", row.previous}});
    EXPECT_EQ(synchronizer->requests, row.requests) << row.previous << " -> " << row.state;
  }
}

TEST_F(EnablingTest, AReleasedKitHearsNothing) {
  const auto synchronizer = enableCounting();
  HLVSDKPayleven::resetSharedInstance();
  post(UIApplicationWillEnterForegroundNotification);
  EXPECT_EQ(synchronizer->requests, 0);
}

TEST_F(EnablingTest, AnEnabledKitSynchronisesThroughItsOwnSynchroniser) {
  enable();
  host->takeTrace();
  post(UIApplicationWillEnterForegroundNotification);
  EXPECT_EQ(provider.lists.count(), 3u);
  EXPECT_EQ(backend.cardFetches.count(), 1u);
}

}  // namespace
}  // namespace hlv::testing
