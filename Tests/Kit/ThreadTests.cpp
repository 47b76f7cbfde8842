// Answers that come from several threads at the same moment.
#include <thread>
#include <vector>

#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

class ThreadTest : public KitTest {
 protected:
  ThreadTest() { platform->onMainThread = false; }

  /// Runs each on a thread of its own and waits for all.
  static void atOnce(const std::vector<std::function<void()>>& answers) {
    std::vector<std::thread> threads;
    threads.reserve(answers.size());
    for (const auto& answer : answers) threads.emplace_back(answer);
    for (auto& thread : threads) thread.join();
  }
};

TEST_F(ThreadTest, TheTwoAnswersOfAFirstCardMeetOnceWhicheverComesFirst) {
  const auto manager = makeManager();
  for (int round = 0; round < 200; ++round) {
    outcome = {};
    manager->addFirstPaymentInstrument(card, address, guest, guestCard());
    provider.tokens.answer("tok", nullptr);
    provider.lists.answer(List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
    platform->runMain();
    const auto update = backend.guestUpdates.take();
    const auto add = backend.cardAdds.take();
    const auto error = makeError("update");
    atOnce({[&] { update(nullptr, error); }, [&] { add(nullptr, backendCard, nullptr); },
            [&] { update(nullptr, nullptr); }});
    platform->runMain();
    EXPECT_EQ(outcome.count, 1);
    // Either answer of the doubled update may be the one that is heard, before or after the card.
    EXPECT_TRUE(outcome.error == error || outcome.card == backendCard);
  }
}

TEST_F(ThreadTest, TheFourFetchesOfASynchronisationMeetOnce) {
  const auto synchronizer = HLVSDKPaylevenPaymentInstrumentsSynchronizer::initWithAPIManager(
      host->backend, host->provider);
  guest->token = "tok";
  for (int round = 0; round < 200; ++round) {
    outcome = {};
    synchronizer->synchronizePaymentInstrumentsForGuest(guest, succeeded());
    const PLVPaymentInstrumentsCompletion lists[] = {provider.lists.take(), provider.lists.take(),
                                                     provider.lists.take()};
    const auto cards = backend.cardFetches.take();
    const auto answerList = [&](int i) {
      lists[i](List<PLVCreditCardPaymentInstrument>{instrument}, nullptr);
    };
    atOnce({[&] { answerList(0); }, [&] { answerList(1); }, [&] { answerList(2); },
            [&] { cards(List<HLVSDKCreditCard>{}, nullptr); }});
    platform->runEverything();
    EXPECT_EQ(outcome.count, 1);
    EXPECT_TRUE(outcome.success);
    EXPECT_EQ(provider.removals.count(), 3u);
    provider.removals.drop();
  }
}

}  // namespace
}  // namespace hlv::testing
