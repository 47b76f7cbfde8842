// Where replies of services meet, when they come at the same moment.
#include <gtest/gtest.h>

#include "Platform/Default/DefaultNotificationCenter.h"
#include "Public/HLVSDKPaylevenKit.h"
#include "Tests/Support/AtOnce.h"
#include "Tests/Support/ScriptedHost.h"

namespace hlv::testing {
namespace {

using Synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer;

/// Adds no order to that of the joins: every thread is the main one, and nothing waits.
struct ImmediatePlatform final : Platform {
  bool isMainThread() const override { return true; }
  std::shared_ptr<Queue> mainQueue() override { return queue; }
  std::shared_ptr<Queue> makeSerialQueue(Text) override { return queue; }
  std::shared_ptr<NotificationCenter> notificationCenter() override { return center; }

  const std::shared_ptr<Queue> queue = std::make_shared<ImmediateQueue>();
  const std::shared_ptr<NotificationCenter> center = std::make_shared<DefaultNotificationCenter>();
};

class JoinTest : public ::testing::Test {
 protected:
  JoinTest() {
    Platform::install(std::make_shared<ImmediatePlatform>());
    Host::install(std::make_shared<ScriptedHost>(Recording::off));
  }
  ~JoinTest() override {
    Host::install(nullptr);
    Platform::install(nullptr);
  }

  /// Services that hold their callbacks, and what was reported.
  struct Replies {
    ScriptedHost host;
    ScriptedBackend& backend = *host.backend;
    ScriptedProvider& provider = *host.provider;
    int reports = 0;
    ErrorPtr error;
  };
  static std::shared_ptr<HLVSDKGuest> guestWith(const NullableString& token) {
    auto guest = std::make_shared<FakeGuest>();
    guest->token = token;
    return guest;
  }
  static List<PLVCreditCardPaymentInstrument> oneInstrument() {
    return {std::make_shared<FakeInstrument>()};
  }
};

TEST_F(JoinTest, TheFirstErrorOfTheBackendWins) {
  struct Round : Replies {
    HLVSDKGuestCompletion updated;
    HLVSDKGuestCardCompletion added;
    Round() {
      const auto manager = HLVSDKPaylevenPaymentInstrumentManager::initWithAPIManager(
          host.backend, host.provider, nullptr);
      manager->addFirstPaymentInstrument(std::make_shared<FakeEnteredCard>(), nullptr,
                                         guestWith({}), [this](auto, auto card, auto reported) {
                                           EXPECT_EQ(card, nullptr);
                                           error = reported;
                                           ++reports;
                                         });
      provider.tokens.answer("tok", nullptr);
      provider.lists.answer(oneInstrument(), nullptr);
      updated = backend.guestUpdates.take();
      added = backend.cardAdds.take();
    }
  };
  atOnce<Round>({[](Round& round) { round.updated(nullptr, makeError("update")); },
                 [](Round& round) {
                   round.added(nullptr, std::make_shared<FakeStoredCard>(), makeError("add"));
                 }},
                [](Round& round) {
                  EXPECT_EQ(round.reports, 1);
                  EXPECT_NE(round.error, nullptr);
                });
}

TEST_F(JoinTest, ASynchronisationKeepsEveryListOrAnError) {
  struct Round : Replies {
    std::shared_ptr<Synchronizer> synchronizer =
        Synchronizer::initWithAPIManager(host.backend, host.provider);
    std::vector<PLVPaymentInstrumentsCompletion> lists;
    HLVSDKCreditCardsCompletion cards;
    Round() {
      synchronizer->synchronizePaymentInstrumentsForGuest(guestWith("tok"),
                                                          [this](bool, auto reported) {
                                                            error = reported;
                                                            ++reports;
                                                          });
      for (int list = 0; list < 3; ++list) lists.push_back(provider.lists.take());
      cards = backend.cardFetches.take();
    }
  };
  for (const bool fails : {false, true}) {
    // Each reply with objects of its own: counting references to a common one would order them.
    const auto error = [fails] { return fails ? makeError("service") : nullptr; };
    const auto list = [&](std::size_t number) {
      return [&, number](Round& round) { round.lists[number](oneInstrument(), error()); };
    };
    atOnce<Round>({list(0), list(1), list(2),
                   [&](Round& round) { round.cards(List<HLVSDKCreditCard>(), error()); }},
                  [&](Round& round) {
                    EXPECT_EQ(round.reports, 1);
                    EXPECT_EQ(round.error != nullptr, fails);
                    EXPECT_EQ(round.provider.removals.count(), fails ? 0U : 3U);
                  });
  }
}

TEST_F(JoinTest, ASearchFindsItsCardWhereverAnotherHasJustFoundOne) {
  struct Round {
    std::shared_ptr<Synchronizer> synchronizer = Synchronizer::initWithAPIManager(nullptr, nullptr);
    void search(std::size_t position) {
      const auto another = std::make_shared<FakeStoredCard>();
      another->external = "another";
      List<HLVSDKCreditCard> cards(position, another);
      cards.push_back(std::make_shared<FakeStoredCard>());
      EXPECT_TRUE(synchronizer->isCreditCardExistsInArray(
          cards,
          HLVSDKPLVPaymentInstrument::initWithPaymentInstrument(oneInstrument()[0], "default")));
    }
  };
  atOnce<Round>({[](Round& round) { round.search(0); }, [](Round& round) { round.search(4); }},
                [](Round&) {});
}

}  // namespace
}  // namespace hlv::testing
