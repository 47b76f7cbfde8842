// The manager's connectivity flag, its address check and the update of a card.
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

class ManagerCoreTest : public KitTest {
 protected:
  void postState(Value state) {
    platform->notificationCenter()->post({"reachability", {{"state", state}}});
  }
  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager = makeManager();
};

TEST_F(ManagerCoreTest, TheFlagFollowsTheLowestEightBitsOfTheNotifiedState) {
  EXPECT_FALSE(manager->isConnectionAvailable()) << "until it is first set";
  const std::pair<Value, bool> rows[] = {{2, true},       {0, false},  {1, true},
                                         {256, false},    {257, true}, {Value(), false},
                                         {-1e300, false}, {1.5, true}, {1e300, false}};
  for (const auto& [state, available] : rows) {
    postState(state);
    EXPECT_EQ(manager->isConnectionAvailable(), available);
  }
  manager.reset();
  postState(1);  // Reaches nobody.
}

TEST_F(ManagerCoreTest, TheFirstEmptyOrMissingFieldIsTheOneReported) {
  const struct {
    NullableString FakeAddress::*field;
    const char* name;
  } rows[] = {{&FakeAddress::zipCode, "zip"},
              {&FakeAddress::cityName, "city"},
              {&FakeAddress::streetName, "street"},
              {&FakeAddress::country, "countryCode"}};
  for (const auto& row : rows) {  // Each spoils one more, from the last to the first.
    ErrorPtr error;
    (*address).*row.field = "";
    EXPECT_FALSE(manager->validateBillingAddress(address, &error));
    EXPECT_EQ(madeAs(error), "invalid '" + std::string(row.name) + "' value '', message nil");
    (*address).*row.field = std::nullopt;
    EXPECT_FALSE(manager->validateBillingAddress(address, nullptr));
  }
  ErrorPtr error;
  EXPECT_FALSE(manager->validateBillingAddress(nullptr, &error));
  EXPECT_EQ(madeAs(error), "invalid 'countryCode' value nil, message nil");
}

TEST_F(ManagerCoreTest, ACompleteAddressIsValidUnlessTheVariableAlreadyHoldsAnError) {
  address->business.reset();
  ErrorPtr error;
  EXPECT_TRUE(manager->validateBillingAddress(address, &error));
  const auto before = error = makeError("before");
  EXPECT_FALSE(manager->validateBillingAddress(address, &error));
  EXPECT_EQ(error, before);
}

TEST_F(ManagerCoreTest, AnUpdateSendsThePresentFieldsUnderTheHostsKeysAndNothingToTheProvider) {
  host->network->state = 0;  // Not looked at.
  address->business.reset();
  address->zipCode = "";
  manager->updatePaymentInstrument("card-1", address, guest, guestCard());
  EXPECT_EQ(host->takeTrace(), "backend update card-1 of guest@example.com");
  EXPECT_EQ(backend.lastAddress,
            (Dictionary{{"k0", "Street 1"}, {"k1", "Berlin"}, {"k2", "DE"}, {"k3", ""}}));
  manager->updatePaymentInstrument(std::nullopt, nullptr, nullptr, nullptr);
  EXPECT_EQ(backend.lastAddress, Dictionary());
  host->texts->businessAddressJSONKeyes.resize(1);
  manager->updatePaymentInstrument("card-1", address, guest, nullptr);
  EXPECT_EQ(backend.lastAddress, (Dictionary{{"k0", "Street 1"}})) << "what has no key stays out";
}

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

TEST_F(ManagerCoreTest, AFurtherCardWithoutATokenIsRefusedByTheConfirmation) {
  manager->addNewPaymentInstrument(card, address, guest, guestCard());
  host->takeTrace();
  provider.adds.answer(nullptr);
  EXPECT_TRUE(host->takeTrace().starts_with("assert parameter paylevenToken: nil\nremote 1 "));
  EXPECT_TRUE(madeAs(outcome.error).starts_with("required 'paylevenToken'"));
}

TEST_F(ManagerCoreTest, WithoutServicesNothingAnswersAndNothingBreaks) {
  const auto alone =
      HLVSDKPaylevenPaymentInstrumentManager::initWithAPIManager(nullptr, nullptr, nullptr);
  guest->token = "tok";
  alone->addPaymentInstrument(card, address, guest, guestCard());
  EXPECT_EQ(madeAs(outcome.error), "code 1 in 'URL', message nil") << "no monitor, no connection";
  alone->addFirstPaymentInstrument(nullptr, nullptr, nullptr, guestCard());
  alone->addNewPaymentInstrument(nullptr, nullptr, nullptr, guestCard());
  alone->updatePaymentInstrument("card-1", address, guest, guestCard());
  alone->processAddedPaymentInstrument(card, "tok", tokenInstrument());
  platform->runEverything();
  EXPECT_EQ(outcome.count, 1);
}

}  // namespace
}  // namespace hlv::testing
