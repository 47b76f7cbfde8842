// Removing from the provider what the backend does not know.
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

using Synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer;
using Instruments = List<PLVCreditCardPaymentInstrument>;

#define SYNCHRONIZE_METHOD                          \
  "-[HLVSDKPaylevenPaymentInstrumentsSynchronizer " \
  "synchronizePaymentInstrumentsForGuest:completion:]"
#define IN_FINAL_STEP " at " SYNCHRONIZE_METHOD "_block_invoke"
#define IN_REMOVAL " at " SYNCHRONIZE_METHOD "_block_invoke_2"

class SynchronizerTest : public KitTest {
 protected:
  SynchronizerTest() { guest->token = "tok"; }

  void start() { synchronizer->synchronizePaymentInstrumentsForGuest(guest, succeeded()); }
  /// Answers the private, business and default lists, in this order.
  void answerLists(Instruments ofPrivate, Instruments ofBusiness = {}, Instruments ofDefault = {}) {
    provider.lists.answer(std::move(ofPrivate), nullptr);
    provider.lists.answer(std::move(ofBusiness), nullptr);
    provider.lists.answer(std::move(ofDefault), nullptr);
  }
  static std::shared_ptr<FakeInstrument> makeInstrument(const char* identifier) {
    auto made = std::make_shared<FakeInstrument>();
    made->id = identifier;
    return made;
  }

  const std::shared_ptr<Synchronizer> synchronizer =
      Synchronizer::initWithAPIManager(host->backend, host->provider);
};

TEST_F(SynchronizerTest, FetchesEverythingAtOnceAndRemovesWhatNoCardStandsFor) {
  storedCard->external = "known";
  start();
  EXPECT_TRUE(synchronizer->isSynchronizing());
  EXPECT_EQ(host->takeTrace(), logged(4,
                                      "\"Will start synchrozation between external payment system "
                                      "and halvo\" at " SYNCHRONIZE_METHOD) +
                                   "\nprovider list tok use case private\n"
                                   "provider list tok use case business\n"
                                   "provider list tok use case default\n"
                                   "backend fetch cards of guest@example.com");

  platform->offMain([&] {
    backend.cardFetches.answer(List<HLVSDKCreditCard>{storedCard}, nullptr);
    answerLists({makeInstrument("orphan-1")}, {makeInstrument("known")},
                {makeInstrument("orphan-2")});
  });
  EXPECT_EQ(platform->runSerial(), 0u) << "the lists are joined on the main queue first";
  platform->runMain();
  platform->runSerial();
  const auto willRemove = [](const std::string& identifier) {
    return logged(4,
                  "\"Will remove payment instrument with identifier %@ from external payment "
                  "system\" <" +
                      identifier + ">" IN_FINAL_STEP);
  };
  EXPECT_EQ(
      host->takeTrace(),
      willRemove("orphan-1") + "\nprovider remove orphan-1 from private of tok\n" +
          willRemove("orphan-2") + "\nprovider remove orphan-2 from default of tok\n" +
          logged(3,
                 "\"Successfully synchronized external payment system with halvo\"" IN_FINAL_STEP));
  EXPECT_FALSE(synchronizer->isSynchronizing());
  EXPECT_EQ(outcome.count, 0) << "told from the main queue";
  platform->runMain();
  EXPECT_EQ(outcome.count, 1);
  EXPECT_TRUE(outcome.success && outcome.onMainThread && !outcome.error);

  provider.removals.answer(makeError("gone"));
  provider.removals.answer(nullptr);
  EXPECT_EQ(host->takeTrace(),
            logged(3,
                   "\"Failed to remove payment instrument from external payment system. %@\" "
                   "<localized gone>" IN_REMOVAL) +
                "\n" +
                logged(3,
                       "\"Successfully remove payment instrument from external payment "
                       "system\"" IN_REMOVAL));
  EXPECT_EQ(outcome.count, 1);
}

TEST_F(SynchronizerTest, ARequestWhileOneIsUnderWayIsDropped) {
  start();
  host->takeTrace();
  start();
  EXPECT_EQ(host->takeTrace(), "");
  backend.cardFetches.answer(std::nullopt, nullptr);
  answerLists({instrument});
  platform->runEverything();
  EXPECT_EQ(outcome.count, 1);
  start();
  EXPECT_EQ(provider.lists.count(), 3u) << "the finished run has cleared the flag";
}

TEST_F(SynchronizerTest, AMissingGuestOrTokenIsAssertedAndNeverCompletes) {
  synchronizer->synchronizePaymentInstrumentsForGuest(nullptr, succeeded());
  guest->token.reset();
  synchronizer->synchronizePaymentInstrumentsForGuest(guest);
  EXPECT_EQ(host->takeTrace(),
            "assert parameter guest: Can not synchronize payment instruments for guest if guest "
            "is nil\n"
            "assert parameter guest.paylevenToken: Can not synchronize payment instruments for "
            "guest without payleven token");
  EXPECT_FALSE(synchronizer->isSynchronizing());
  EXPECT_EQ(outcome.count, 0);
  guest->token = "";
  start();
  EXPECT_EQ(provider.lists.count(), 3u) << "an empty token passes";
}

TEST_F(SynchronizerTest, NoInstrumentsIsASuccessThatLeavesTheFlagSet) {
  start();
  host->takeTrace();
  backend.cardFetches.answer(List<HLVSDKCreditCard>{storedCard}, nullptr);
  provider.lists.answer(std::nullopt, nullptr);  // No list is an empty one.
  provider.lists.answer(Instruments(), nullptr);
  provider.lists.answer(Instruments(), nullptr);
  platform->runEverything();
  EXPECT_EQ(host->takeTrace(),
            logged(3, "\"Nothing to synchronize. No external payment instruments\"" IN_FINAL_STEP));
  EXPECT_TRUE(outcome.success);
  EXPECT_TRUE(synchronizer->isSynchronizing());
  start();
  EXPECT_EQ(host->takeTrace(), "");
}

TEST_F(SynchronizerTest, OneFailedListFailsTheWholeRunAndRemovesNothing) {
  start();
  host->takeTrace();
  backend.cardFetches.answer(std::nullopt, nullptr);
  provider.lists.answer(Instruments{instrument}, nullptr);
  provider.lists.answer(Instruments{instrument}, makeError("business"));
  provider.lists.answer(Instruments{instrument}, nullptr);
  platform->runEverything();
  EXPECT_EQ(host->takeTrace(),
            logged(1,
                   "\"Failed to synchronize payment instruments. %@\" <developer "
                   "provider(business)>" IN_FINAL_STEP));
  EXPECT_EQ(madeAs(outcome.error), "provider(business)");
  EXPECT_FALSE(outcome.success);
  EXPECT_TRUE(synchronizer->isSynchronizing());
}

TEST_F(SynchronizerTest, OfTwoFailedFetchesTheLastStoredErrorWins) {
  for (const bool backendLast : {true, false}) {
    synchronizer->setSynchronizing(false);
    start();
    const auto failBackend = [&] {
      backend.cardFetches.answer(List<HLVSDKCreditCard>{storedCard}, makeError("backend"));
    };
    if (!backendLast) failBackend();
    provider.lists.answer(std::nullopt, makeError("first"));
    provider.lists.answer(std::nullopt, makeError("second"));
    provider.lists.answer(Instruments{instrument}, nullptr);
    platform->runMain();
    if (backendLast) failBackend();
    platform->runEverything();
    EXPECT_EQ(madeAs(outcome.error), backendLast ? "backend" : "provider(second)");
  }
}

TEST_F(SynchronizerTest, ACompletionOnTheMainThreadComesBeforeTheFlagIsCleared) {
  bool wasSet = false;
  synchronizer->setSynchronizationQueue(platform->main);
  synchronizer->synchronizePaymentInstrumentsForGuest(
      guest, [&](bool, auto) { wasSet = synchronizer->isSynchronizing(); });
  backend.cardFetches.answer(std::nullopt, nullptr);
  answerLists({instrument});
  platform->runMain();
  EXPECT_TRUE(wasSet);
  EXPECT_FALSE(synchronizer->isSynchronizing());
}

TEST_F(SynchronizerTest, ARunKeepsTheSynchroniserAliveToItsEnd) {
  auto released = Synchronizer::initWithAPIManager(host->backend, host->provider);
  const std::weak_ptr<Synchronizer> watched = released;
  released->synchronizePaymentInstrumentsForGuest(guest, succeeded());
  released.reset();
  backend.cardFetches.answer(std::nullopt, nullptr);
  answerLists({instrument});
  platform->runEverything();
  EXPECT_EQ(outcome.count, 1);
  EXPECT_EQ(provider.removals.count(), 1u);
  EXPECT_TRUE(watched.expired());
}

TEST_F(SynchronizerTest, ARunThatIsNeverAnsweredIsFreedWithItsSynchroniser) {
  auto released = Synchronizer::initWithAPIManager(host->backend, host->provider);
  const std::weak_ptr<Synchronizer> watched = released;
  released->synchronizePaymentInstrumentsForGuest(guest, succeeded());
  released.reset();
  provider.lists.drop();
  backend.cardFetches.drop();
  EXPECT_TRUE(watched.expired());
}

TEST_F(SynchronizerTest, TheQueueIsMadeAtCreationAndReplacedWhenMissing) {
  synchronizer->setSynchronizationQueue(nullptr);
  start();
  ASSERT_EQ(platform->labelsMade.size(), 2u);
  EXPECT_TRUE(platform->labelsMade[0].ends_with(
      ".HLVSDKPaylevenKit.HLVSDKPaylevenPaymentInstrumentsSynchronizer"));
  EXPECT_TRUE(platform->labelsMade[1].ends_with(".halvoSDK.HLVSDKPaymentManager.Synchronization"));
}

TEST_F(SynchronizerTest, AnExternalIdentifierDecidesAloneAndOnlyWithoutOneTheRestCounts) {
  const auto pair = HLVSDKPLVPaymentInstrument::initWithPaymentInstrument(instrument, "default");
  instrument->stateNumber = 1;  // Plays no part here.
  const auto exists = [&] {
    return synchronizer->isCreditCardExistsInArray(List<HLVSDKCreditCard>{nullptr, storedCard},
                                                   pair);
  };
  EXPECT_TRUE(exists());
  storedCard->external = "other";
  EXPECT_FALSE(exists()) << "not tried by digits";
  storedCard->external = "plv-1";
  storedCard->digits = "2222";
  storedCard->useCaseName = "private";
  EXPECT_TRUE(exists());
  storedCard->external.reset();
  EXPECT_FALSE(exists());
  storedCard->digits = "1111";
  EXPECT_FALSE(exists()) << "another use case";
  storedCard->useCaseName = "default";
  storedCard->brandName = "VISA";
  EXPECT_FALSE(exists());
  EXPECT_FALSE(synchronizer->isCreditCardExistsInArray(std::nullopt, pair));
}

TEST_F(SynchronizerTest, TheFetchGathersPairsInTheOrderOfTheAnswers) {
  NullableList<HLVSDKPLVPaymentInstrument> pairs;
  synchronizer->fetchAllPaylevenPaymentInstrumentsForGuest(guest, [&](auto fetched, auto error) {
    pairs = fetched;
    outcome.error = error;
  });
  const auto ofPrivate = provider.lists.take();
  const auto ofBusiness = provider.lists.take();
  const auto ofDefault = provider.lists.take();
  platform->offMain([&] {
    ofDefault(Instruments{makeInstrument("d")}, nullptr);
    ofPrivate(Instruments{makeInstrument("p1"), makeInstrument("p2")}, nullptr);
    ofBusiness(Instruments(), nullptr);
  });
  platform->runMain();
  std::string order;
  for (const auto& pair : *pairs) {
    order += *pair->paymentInstrument()->identifier() + "/" + *pair->useCase() + " ";
  }
  EXPECT_EQ(order, "d/default p1/private p2/private ");
}

}  // namespace
}  // namespace hlv::testing
