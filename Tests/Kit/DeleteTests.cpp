// Deleting a card on both sides.
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

#define DELETE_METHOD                         \
  "-[HLVSDKPaylevenPaymentInstrumentManager " \
  "deletePaymentInstrumentWithID:useCase:fromGuest:completion:]"
const std::string sourceFile =
    " in Public/Managers/HLVSDKPaylevenPaymentInstrumentManager+Delete.cpp";

class DeleteTest : public KitTest {
 protected:
  DeleteTest() {
    guest->token = "tok";
    updatedGuest->token = "updated-tok";
  }

  void start() { manager->deletePaymentInstrumentWithID("card-1", "private", guest, guestOnly()); }
  void startAndDeleteAtBackend() {
    start();
    backend.deletions.answer(updatedGuest, nullptr);
  }
  void listInstrument() {
    provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
  }

  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager = makeManager();
};

TEST_F(DeleteTest, DeletesAtTheBackendAndThenRemovesAtTheProviderUnderTheUpdatedGuest) {
  start();
  platform->offMain([&] {
    backend.deletions.answer(updatedGuest, nullptr);
    listInstrument();
    provider.removals.answer(nullptr);
  });
  EXPECT_EQ(host->takeTrace(),
            "backend delete card-1 of guest@example.com\n"
            "provider list updated-tok use case private\n"
            "provider remove plv-1 from private of updated-tok");
  EXPECT_EQ(outcome.count, 0);
  platform->runMain();
  EXPECT_EQ(told(), "1x guest another, card none, error none");
  EXPECT_EQ(outcome.guest, updatedGuest);
  EXPECT_TRUE(outcome.onMainThread);
}

TEST_F(DeleteTest, TheFirstMissingArgumentIsAssertedAndReportedUnderItsOwnName) {
  const struct {
    bool token;
    NullableString ID, useCase;
    const char* asserted;
    const char* reported;
  } rows[] = {{false, std::nullopt, std::nullopt, "guest.paylevenToken", "paymentToken"},
              {true, std::nullopt, std::nullopt, "halvoID", "halvoID"},
              {true, "card-1", std::nullopt, "useCase", "useCase"}};
  for (const auto& row : rows) {
    guest->token = row.token ? NullableString("tok") : std::nullopt;
    manager->deletePaymentInstrumentWithID(row.ID, row.useCase, guest, guestOnly());
    EXPECT_EQ(host->takeTrace(), std::string("assert parameter ") + row.asserted + ": nil");
    const std::string made =
        std::string("required '") + row.reported + "', message nil, by " DELETE_METHOD;
    EXPECT_EQ(madeAs(outcome.error), made + sourceFile);

    platform->offMain(
        [&] { manager->deletePaymentInstrumentWithID(row.ID, row.useCase, guest, guestOnly()); });
    platform->runMain();
    EXPECT_EQ(madeAs(outcome.error), made + "_block_invoke" + sourceFile);
    host->takeTrace();
  }
  manager->deletePaymentInstrumentWithID("card-1", "private", nullptr, guestOnly());
  EXPECT_EQ(host->takeTrace(), "assert parameter guest.paylevenToken: nil") << "no guest at all";
}

TEST_F(DeleteTest, ACardTheGuestDoesNotHaveIsReportedWithoutAssertionAlsoOffline) {
  const std::string made =
      "required 'existedCard', message 'Given guest must have credit card with the given "
      "halvoID', by " DELETE_METHOD +
      sourceFile;
  host->network->state = 0;
  storedCard->id = "other";
  platform->offMain([&] { start(); });
  platform->runMain();
  EXPECT_EQ(madeAs(outcome.error), made) << "built before it is posted";
  guest->cards.reset();
  start();
  EXPECT_EQ(madeAs(outcome.error), made);
  EXPECT_EQ(host->takeTrace(), "");
}

TEST_F(DeleteTest, OfflineNothingIsAsked) {
  manager->setConnectionAvaiable(true);
  host->network->state = 256;  // Zero in its lowest eight bits.
  start();
  EXPECT_EQ(told(), "1x guest none, card none, error code 1 in 'URL', message nil");
  EXPECT_EQ(host->takeTrace(), "");
  EXPECT_FALSE(manager->isConnectionAvailable());
}

TEST_F(DeleteTest, ABackendErrorPassesAsItIsWithOrWithoutTheManager) {
  const auto error = makeError("refused");
  start();
  backend.deletions.answer(updatedGuest, error);
  EXPECT_EQ(outcome.error, error);
  EXPECT_EQ(outcome.guest, nullptr);
  start();
  manager.reset();
  backend.deletions.answer(updatedGuest, error);
  EXPECT_EQ(outcome.count, 2);
  EXPECT_EQ(provider.lists.count(), 0u);
}

TEST_F(DeleteTest, ReleasedBeforeTheBackendSucceedsItNeverCompletes) {
  start();
  manager.reset();
  backend.deletions.answer(updatedGuest, nullptr);
  platform->runEverything();
  EXPECT_EQ(provider.lists.count(), 0u);
  EXPECT_EQ(outcome.count, 0);
}

TEST_F(DeleteTest, OnceTheProviderIsAskedTheManagerIsKept) {
  startAndDeleteAtBackend();
  const std::weak_ptr<HLVSDKPaylevenPaymentInstrumentManager> kept = manager;
  manager.reset();
  EXPECT_FALSE(kept.expired());
  listInstrument();
  EXPECT_TRUE(kept.expired());
  provider.removals.answer(nullptr);
  EXPECT_EQ(outcome.count, 1);
}

TEST_F(DeleteTest, AFailedListIsNotReported) {
  startAndDeleteAtBackend();
  host->takeTrace();
  provider.lists.answer(std::nullopt, makeError("list"));
  EXPECT_EQ(host->takeTrace(), "assert parameter paylevenInstruments: nil");
  EXPECT_EQ(told(), "1x guest another, card none, error none");

  startAndDeleteAtBackend();
  provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, makeError("list"));
  EXPECT_EQ(provider.removals.count(), 1u) << "what was delivered is looked through all the same";
}

TEST_F(DeleteTest, NothingIsRemovedWhereNothingUsableMatches) {
  instrument->stateNumber = 1;
  startAndDeleteAtBackend();
  listInstrument();
  EXPECT_EQ(told(), "1x guest another, card none, error none");
  EXPECT_EQ(provider.removals.count(), 0u);
}

TEST_F(DeleteTest, AFailedRemovalReportsTheGuestAndTheWrappedError) {
  startAndDeleteAtBackend();
  listInstrument();
  provider.removals.answer(makeError("removal"));
  EXPECT_EQ(told(), "1x guest another, card none, error provider(removal)");
}

TEST_F(DeleteTest, TheFirstOfTwoCardsWithOneIDIsDeleted) {
  const auto second = std::make_shared<FakeStoredCard>();
  second->digits = "2222";
  guest->cards->push_back(nullptr);  // A null card has no ID.
  guest->cards->push_back(second);
  instrument->number = "************2222";
  startAndDeleteAtBackend();
  listInstrument();
  EXPECT_EQ(provider.removals.count(), 0u);
}

TEST_F(DeleteTest, ANullUpdatedGuestHasNoToken) {
  start();
  host->takeTrace();
  backend.deletions.answer(nullptr, nullptr);
  EXPECT_EQ(host->takeTrace(), "provider list nil use case private");
}

TEST_F(DeleteTest, ANullCompletionStillDoesEverything) {
  manager->deletePaymentInstrumentWithID(std::nullopt, "private", guest, nullptr);
  manager->deletePaymentInstrumentWithID("card-1", "private", guest, nullptr);
  backend.deletions.answer(updatedGuest, nullptr);
  listInstrument();
  platform->offMain([&] { provider.removals.answer(makeError("removal")); });
  EXPECT_EQ(host->trace.size(), 4u);
  EXPECT_EQ(platform->main->waiting(), 0u);
}

}  // namespace
}  // namespace hlv::testing
