#include <chrono>
#include <future>

#include "Host/Halvo_Authentication/HLVSession.h"
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
  const auto session = HLVSession::activeSession();
  EXPECT_TRUE(session->isAuthorized());
  sandbox->signOut();
  EXPECT_FALSE(session->isAuthorized());
  EXPECT_FALSE(sandbox->signIn("4111-1111-1111-1111@example.com"));
  expect("HLVBackendErrorDomain 401", deleteCard(ID, guest));
  EXPECT_EQ(guest->creditCards()->size(), 1U);
  for (const NullableString& key : {NullableString(""), NullableString()}) {
    provider->registerWithAPIKey(key);
    expect("PLVErrorDomain 401", list("tok"));
  }
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
