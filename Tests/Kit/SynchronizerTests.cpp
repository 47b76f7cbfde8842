// What the explorer does not vary: queues that an owner sets, and what an override decides.
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

using Synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer;

class SynchronizerTest : public KitTest {
 protected:
  SynchronizerTest() {
    guest->token = "tok";
    synchronizer->setApiManager(host->backend);
    synchronizer->setPaylevenClient(host->provider);
  }

  const std::shared_ptr<Synchronizer> synchronizer =
      Synchronizer::initWithAPIManager(nullptr, nullptr);
};

TEST_F(SynchronizerTest, ACompletionOnTheMainThreadComesAfterTheLogAndBeforeTheFlagIsCleared) {
  bool isBetween = false;
  synchronizer->setSynchronizationQueue(platform->main);
  synchronizer->synchronizePaymentInstrumentsForGuest(guest, [&](bool, auto) {
    isBetween = synchronizer->isSynchronizing() &&
                host->takeTrace().find("Successfully sync") != std::string::npos;
  });
  backend.cardFetches.answer(std::nullopt, nullptr);
  for (int list = 0; list < 3; ++list) {
    provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
  }
  platform->runMain();
  EXPECT_TRUE(isBetween);
  EXPECT_FALSE(synchronizer->isSynchronizing());
}

TEST_F(SynchronizerTest, ACardThatIsTiedDuringAnEarlierRemovalKeepsItsInstrument) {
  const auto second = std::make_shared<FakeInstrument>();
  second->id = "plv-2";
  storedCard->digits = "2222";
  provider.removals.answerInside = [&](const auto& answer, const CallOf&) {
    storedCard->external = "plv-2";
    answer(nullptr);
  };
  synchronizer->synchronizePaymentInstrumentsForGuest(guest);
  backend.cardFetches.answer(List<HLVSDKCreditCard>{storedCard}, nullptr);
  provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument, second}, nullptr);
  for (int list = 0; list < 2; ++list) provider.lists.answer(std::nullopt, nullptr);
  platform->runEverything();
  const auto trace = host->takeTrace();
  EXPECT_NE(trace.find("provider remove plv-1"), std::string::npos);
  EXPECT_EQ(trace.find("provider remove plv-2"), std::string::npos);
}

TEST_F(SynchronizerTest, AnOverrideDecidesWhatIsFetchedAndWhatStays) {
  struct KeepsEverything final : Synchronizer {
    explicit KeepsEverything(const ScriptedHost& host)
        : Synchronizer(host.backend, host.provider) {}
    void fetchAllPaylevenPaymentInstrumentsForGuest(
        const std::shared_ptr<HLVSDKGuest>&,
        HLVSDKPLVPaymentInstrumentsCompletion completion) override {
      completion(fetched, nullptr);
    }
    bool isCreditCardExistsInArray(
        const NullableList<HLVSDKCreditCard>&,
        const std::shared_ptr<HLVSDKPLVPaymentInstrument>&) const override {
      return true;
    }
    NullableList<HLVSDKPLVPaymentInstrument> fetched;
  };
  for (const bool hasList : {false, true}) {
    const auto own = std::make_shared<KeepsEverything>(*host);
    if (hasList) {
      own->fetched = List<HLVSDKPLVPaymentInstrument>{
          HLVSDKPLVPaymentInstrument::initWithPaymentInstrument(instrument, "default")};
    }
    own->synchronizePaymentInstrumentsForGuest(guest);
    backend.cardFetches.answer(std::nullopt, nullptr);
    platform->runEverything();
    const auto trace = host->takeTrace();
    EXPECT_EQ(trace.find("Nothing to synchronize") == std::string::npos, hasList);
    EXPECT_EQ(trace.find("provider remove"), std::string::npos);
  }
}

TEST_F(SynchronizerTest, TheQueueIsMadeAtCreationAndReplacedWhenMissing) {
  synchronizer->setSynchronizationQueue(nullptr);
  synchronizer->synchronizePaymentInstrumentsForGuest(guest);
  ASSERT_EQ(platform->labelsMade.size(), 2u);
  EXPECT_TRUE(platform->labelsMade[0].ends_with(
      ".HLVSDKPaylevenKit.HLVSDKPaylevenPaymentInstrumentsSynchronizer"));
  EXPECT_TRUE(platform->labelsMade[1].ends_with(".halvoSDK.HLVSDKPaymentManager.Synchronization"));
}

}  // namespace
}  // namespace hlv::testing
