// A further card of a guest who has a token.
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

#define ADD_NEW_METHOD                        \
  "-[HLVSDKPaylevenPaymentInstrumentManager " \
  "addNewPaymentInstrument:billingAddress:forGuest:completion:]"

class AddNewTest : public KitTest {
 protected:
  AddNewTest() { guest->token = "tok"; }

  void start() { manager->addNewPaymentInstrument(card, address, guest, guestCard()); }
  void listInstrument() {
    provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
  }

  std::shared_ptr<HLVSDKPaylevenPaymentInstrumentManager> manager = makeManager();
};

TEST_F(AddNewTest, AddsConfirmsAndRegistersAndReportsTheBackendsObjects) {
  start();
  platform->offMain([&] { provider.adds.answer(nullptr); });
  platform->offMain([&] { listInstrument(); });
  platform->runMain();
  EXPECT_EQ(card->identifier, "plv-1");
  EXPECT_EQ(host->takeTrace(),
            "provider add new[..1111 09/2031 cvv A. Guest] under tok use case default\n"
            "provider list tok use case default\n"
            "backend add card for guest@example.com token=tok");
  platform->offMain([&] { backend.cardAdds.answer(updatedGuest, backendCard, nullptr); });
  EXPECT_EQ(outcome.count, 0);
  platform->runMain();
  EXPECT_EQ(told(), "1x guest another, card backend's, error none");
  EXPECT_EQ(outcome.guest, updatedGuest);
  EXPECT_TRUE(outcome.onMainThread);
}

TEST_F(AddNewTest, ARefusedRegistrationIsReportedWithoutItsErrorOrALogLine) {
  start();
  provider.adds.answer(nullptr);
  listInstrument();
  host->takeTrace();
  backend.cardAdds.answer(nullptr, nullptr, makeError("refused"));
  EXPECT_EQ(told(), "1x guest none, card none, error none");
  EXPECT_EQ(host->takeTrace(), "");
}

TEST_F(AddNewTest, AProviderErrorIsWrappedLoggedAndReported) {
  start();
  host->takeTrace();
  platform->offMain([&] { provider.adds.answer(makeError("refused")); });
  EXPECT_EQ(host->takeTrace(), "") << "logged where it is delivered";
  platform->runMain();
  EXPECT_EQ(
      host->takeTrace(),
      logged(1,
             "\"Failed to add new payment instrument. %@\" <provider(refused)> at " ADD_NEW_METHOD
             "_block_invoke"));
  EXPECT_EQ(told(), "1x guest none, card none, error provider(refused)");
}

TEST_F(AddNewTest, AFailedConfirmationIsLoggedAndReportedUnchanged) {
  start();
  provider.adds.answer(nullptr);
  host->takeTrace();
  provider.lists.answer(std::nullopt, makeError("list"));
  EXPECT_EQ(
      host->takeTrace(),
      logged(1, "\"Failed to add new payment instrument. %@\" <provider(list)> at " ADD_NEW_METHOD
                "_block_invoke"));
  EXPECT_EQ(madeAs(outcome.error), "provider(list)");
}

TEST_F(AddNewTest, AnInstrumentWithoutIdentifierIsLoggedAndReported) {
  instrument->id.reset();
  start();
  provider.adds.answer(nullptr);
  host->takeTrace();
  listInstrument();
  EXPECT_EQ(host->takeTrace(),
            logged(1,
                   "\"Failed to add new payment instrument. Added instrument to external "
                   "payment system doesn't have identifier\" at " ADD_NEW_METHOD "_block_invoke"));
  EXPECT_EQ(madeAs(outcome.error),
            "required 'identifier', message 'Added instrument to external payment system doesn't "
            "have identifier', by " ADD_NEW_METHOD
            "_block_invoke in "
            "Public/Managers/HLVSDKPaylevenPaymentInstrumentManager+AddNew.cpp");
  EXPECT_EQ(card->identifier, std::nullopt);
  EXPECT_EQ(backend.cardAdds.count(), 0u);
}

TEST_F(AddNewTest, AMissingTokenGoesToTheProviderAndIsRefusedByTheConfirmation) {
  guest->token.reset();
  start();
  provider.adds.answer(nullptr);
  EXPECT_EQ(host->takeTrace().find(
                "provider add new[..1111 09/2031 cvv A. Guest] under nil use case default\n"
                "assert parameter paylevenToken: nil\n"),
            0u);
  EXPECT_NE(madeAs(outcome.error).find("required 'paylevenToken'"), std::string::npos);
}

TEST_F(AddNewTest, ReleasedBeforeTheProviderAnswersItNeverCompletes) {
  start();
  manager.reset();
  host->takeTrace();
  provider.adds.answer(nullptr);
  platform->runEverything();
  EXPECT_EQ(host->takeTrace(), "");
  EXPECT_EQ(outcome.count, 0);
}

TEST_F(AddNewTest, ReleasedBeforeTheConfirmationTheCardIsMarkedButNotRegistered) {
  start();
  provider.adds.answer(nullptr);
  manager.reset();
  host->takeTrace();
  listInstrument();
  platform->runEverything();
  EXPECT_EQ(card->identifier, "plv-1");
  EXPECT_EQ(host->takeTrace(), "");
  EXPECT_EQ(outcome.count, 0);
}

TEST_F(AddNewTest, ReleasedItStillReportsAnErrorAndAMissingIdentifier) {
  for (const bool listFails : {true, false}) {
    instrument->id.reset();
    start();
    provider.adds.answer(nullptr);
    manager.reset();
    if (listFails) {
      provider.lists.answer(std::nullopt, makeError("list"));
    } else {
      listInstrument();
    }
    manager = makeManager();
  }
  EXPECT_EQ(outcome.count, 2);
}

}  // namespace
}  // namespace hlv::testing
