// The manager's connectivity flag, its address check and the update of a card.
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

class ManagerCoreTest : public KitTest {
 protected:
  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager = makeManager();
};

TEST_F(ManagerCoreTest, AMonitorMayReplaceItselfWhileItIsAsked) {
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

TEST_F(ManagerCoreTest, AFirstCardAndItsAddressAreHeldUntilTheCompletionHasBeenCalled) {
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

TEST_F(ManagerCoreTest, AnInstrumentWhoseStateChangesAfterItWasFoundIsRefused) {
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
