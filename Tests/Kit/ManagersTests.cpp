// What the explorer does not vary, or comes to late: queues that an owner sets, what an override
// decides, what is asserted, and what changes or goes while it is used.
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

using Synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer;

class ManagersTest : public KitTest {
 protected:
  ManagersTest() {
    guest->token = "tok";
    synchronizer->setApiManager(host->backend);
    synchronizer->setPaylevenClient(host->provider);
  }

  const std::shared_ptr<Synchronizer> synchronizer =
      Synchronizer::initWithAPIManager(nullptr, nullptr);
  const std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager = makeManager();
};

TEST_F(ManagersTest, ACompletionOnTheMainThreadComesAfterTheLogAndBeforeTheFlagIsCleared) {
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
  platform->runEverything();
  EXPECT_TRUE(isBetween);
  EXPECT_FALSE(synchronizer->isSynchronizing());
}

TEST_F(ManagersTest, ACardThatIsTiedDuringAnEarlierRemovalKeepsItsInstrument) {
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

TEST_F(ManagersTest, ASynchronisationWithoutAGuestOrATokenIsAsserted) {
  const std::string cannot = "Can not synchronize payment instruments for guest ";
  synchronizer->synchronizePaymentInstrumentsForGuest(nullptr);
  EXPECT_EQ(host->takeTrace(), "assert parameter guest: " + cannot + "if guest is nil");
  guest->token.reset();
  synchronizer->synchronizePaymentInstrumentsForGuest(guest);
  EXPECT_EQ(host->takeTrace(),
            "assert parameter guest.paylevenToken: " + cannot + "without payleven token");
}

TEST_F(ManagersTest, AnOverrideMayFetchNoList) {
  struct FetchesNothing final : Synchronizer {
    explicit FetchesNothing(const ScriptedHost& host) : Synchronizer(host.backend, host.provider) {}
    void fetchAllPaylevenPaymentInstrumentsForGuest(
        const std::shared_ptr<HLVSDKGuest>&,
        HLVSDKPLVPaymentInstrumentsCompletion completion) override {
      completion(std::nullopt, nullptr);
    }
  };
  const auto own = std::make_shared<FetchesNothing>(*host);
  own->synchronizePaymentInstrumentsForGuest(guest);
  backend.cardFetches.answer(std::nullopt, nullptr);
  platform->runEverything();
  EXPECT_NE(host->takeTrace().find("Nothing to synchronize"), std::string::npos);
}

TEST_F(ManagersTest, TheQueueIsMadeAtCreationAndReplacedWhenMissing) {
  synchronizer->setSynchronizationQueue(nullptr);
  synchronizer->synchronizePaymentInstrumentsForGuest(guest);
  ASSERT_EQ(platform->labelsMade.size(), 2u);
  EXPECT_TRUE(platform->labelsMade[0].ends_with(
      ".HLVSDKPaylevenKit.HLVSDKPaylevenPaymentInstrumentsSynchronizer"));
  EXPECT_TRUE(platform->labelsMade[1].ends_with(".halvoSDK.HLVSDKPaymentManager.Synchronization"));
}

TEST_F(ManagersTest, AMonitorMayReplaceItselfWhileItIsAsked) {
  struct Replacing final : HLVSDKReachability {
    HLVSDKPaylevenPaymentInstrumentManager* owner = nullptr;
    std::shared_ptr<bool> isGone = std::make_shared<bool>(false);
    ~Replacing() override { *isGone = true; }
    std::int64_t currentState() const override {
      const auto gone = isGone;
      owner->setReachability(nullptr);
      EXPECT_FALSE(*gone);
      return 1;
    }
  };
  auto monitor = std::make_shared<Replacing>();
  monitor->owner = manager.get();
  manager->setReachability(std::move(monitor));
  manager->deletePaymentInstrumentWithID(std::nullopt, std::nullopt, nullptr, nullptr);
  EXPECT_TRUE(manager->isConnectionAvailable());
}

TEST_F(ManagersTest, AFirstCardAndItsAddressAreHeldUntilTheCompletionHasBeenCalled) {
  auto ownCard = std::make_shared<FakeEnteredCard>();
  auto ownAddress = std::make_shared<FakeAddress>();
  const std::weak_ptr<Object> seenCard = ownCard;
  const std::weak_ptr<Object> seenAddress = ownAddress;
  manager->addFirstPaymentInstrument(std::move(ownCard), std::move(ownAddress), guest,
                                     [&](auto, auto, auto) {
                                       ++outcome.count;
                                       EXPECT_FALSE(seenCard.expired() || seenAddress.expired());
                                     });
  provider.tokens.answer("tok", nullptr);
  provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
  backend.guestUpdates.answer(guest, nullptr);
  backend.cardAdds.answer(guest, storedCard, nullptr);
  platform->runEverything();
  EXPECT_EQ(outcome.count, 1);
  EXPECT_TRUE(seenCard.expired() && seenAddress.expired());
}

TEST_F(ManagersTest, AnInstrumentWhoseStateChangesAfterItWasFoundIsRefused) {
  struct Changing final : FakeInstrument {
    mutable std::uint64_t asked = 0;
    std::uint64_t state() const override { return asked++; }
  };
  manager->processAddedPaymentInstrument(card, "tok", [&](auto token, auto found, auto error) {
    EXPECT_EQ(token, std::nullopt);
    EXPECT_EQ(found, nullptr);
    outcome.error = error;
  });
  provider.lists.answer(List<PLVCreditCardPaymentInstrument>{std::make_shared<Changing>()},
                        nullptr);
  platform->runEverything();
  EXPECT_EQ(madeAs(outcome.error),
            "code 5 in 'Payment', message 'Failed to add payment instrument. Payment "
            "instrument information is invalid'");
}

}  // namespace
}  // namespace hlv::testing
