#include <chrono>
#include <future>

#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"
#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"
#include "Host/Halvo_Authentication/HLVSession.h"
#include "Platform/Platform.h"
#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::sandbox {
namespace {

using Services = SandboxTest;

TEST_F(Services, ServeTheAppThatIsRegisteredForTheGuestWhoIsSignedIn) {
  start();
  const auto ID = std::get<1>(addCard("visa", guest))->halvoID();
  const auto expect = [](const std::string& error, const auto& answer) {
    EXPECT_EQ(nameOf(std::get<ErrorPtr>(answer)), error);
  };
  expect("HLVBackendErrorDomain 400", addCard("visa", nullptr));
  expect("HLVBackendErrorDomain 400", answerTo<CardAnswer>([&](auto completion) {
           backend->addCreditCardForGuest(guest, nullptr, completion);
         }));
  expect("HLVArgumentErrorDomain 1", addCard("visa", guest, std::nullopt));
  EXPECT_TRUE(sandbox->signIn("other@example.com"));
  expect("HLVBackendErrorDomain 403", deleteCard(ID, guest));
  expect("HLVBackendErrorDomain 404", deleteCard(ID, HLVSDKGuest::currentGuest()));
  sandbox->signOut();
  expect("HLVBackendErrorDomain 401", deleteCard(ID, guest));
  EXPECT_EQ(guest->creditCards()->size(), 1U);
  for (const NullableString& key : {NullableString(""), NullableString()}) {
    provider->registerWithAPIKey(key);
    expect("PLVErrorDomain 401", list("tok"));
  }
}

TEST_F(Services, NotifyWithTheirValuesAndTheHostAnswersTheSame) {
  start();
  std::string shown;
  std::vector<std::unique_ptr<Observation>> observations;
  const std::pair<NullableString, const char*> names[] = {
      {kHLVSDKDidChangeAuthorizationStatusNotification(), "a"},
      {HLVSDKReachabilityDidChangeReachabilityStateNotification(), "r"},
      {UIApplicationWillEnterForegroundNotification, "f"}};
  for (const auto& [name, sign] : names) {
    observations.push_back(Platform::current()->notificationCenter()->observe(
        name, [&shown, sign = sign](const Notification& notification) {
          shown += sign;
          for (const auto& entry : notification.userInfo) {
            shown += std::to_string(entry.second.integerValue());
          }
        }));
  }
  const auto session = HLVSession::activeSession();
  EXPECT_TRUE(session->isAuthorized());
  sandbox->signOut();
  EXPECT_FALSE(session->isAuthorized());
  EXPECT_EQ(HLVSession::activeSession(), nullptr);
  EXPECT_EQ(HLVSDKGuest::currentGuest(), nullptr);
  for (const char* address : {"nobody", "4111-1111-1111-1111@example.com"}) {
    EXPECT_FALSE(sandbox->signIn(address));
    EXPECT_TRUE(sandbox->signedInEmail() == std::nullopt);
  }
  EXPECT_TRUE(sandbox->signIn(email));
  sandbox->setReachable(false);
  EXPECT_EQ(HLVSDKReachability::sharedReachability()->currentState(), 0);
  sandbox->setReachable(true);
  sandbox->setReachable(true);
  sandbox->enterForeground();
  // The previous state's key sorts before the state's.
  EXPECT_EQ(shown, "a0a1r10r01r11f");
}

/// Reports when it goes.
struct Freed {
  std::promise<void> promise;
  ~Freed() { promise.set_value(); }
};

TEST_F(Services, ASandboxThatIsLetGoInsideAnAnswerFreesWhatStillWaits) {
  start();
  auto held = std::make_shared<Freed>();
  const auto freed = held->promise.get_future();
  // Each callback holds it; the first one waits for a day and is never called.
  arm("getPaymentInstrumentsList", "delay", [](Fault& fault) {
    fault.delayMilliseconds = 24LL * 60 * 60 * 1000;
    fault.useCase = "private";
  });
  auto client = provider;
  auto last = std::make_shared<std::pair<decltype(sandbox), decltype(provider)>>(sandbox, provider);
  provider->getPaymentInstrumentsList("t", "private", [held](const Instruments&, const ErrorPtr&) {
    FAIL() << "answered after all";
  });
  stop();
  client->getPaymentInstrumentsList(
      "t", "default", [last, held](const Instruments&, const ErrorPtr&) mutable { last.reset(); });
  last.reset(), held.reset(), client.reset();
  constexpr std::chrono::seconds tooLong(60);
  EXPECT_EQ(freed.wait_for(tooLong), std::future_status::ready);
}

}  // namespace
}  // namespace hlv::sandbox
