#include <chrono>
#include <future>

#include "Sandbox/Cards/CardRules.h"
#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::sandbox {
namespace {

using Services = SandboxTest;

TEST_F(Services, TheProviderListsWhatItStoresAsTheCardAndTheBrandTableSpellIt) {
  start();
  for (const auto& card : testCards()) {
    if (card.effect != findTestCard("visa")->effect) continue;
    const auto [token, error] = createToken(card.fields, "private");
    ASSERT_EQ(nameOf(error), "none") << card.name;
    const auto stored = std::get<0>(list(token, "private"))->back();
    EXPECT_EQ(stored->pan(), maskedPan(card.fields.pan));
    auto typed = card.fields.pan;
    typed.insert(2, "- ");
    EXPECT_EQ(stored->cardBrand(), HLVSDKCreditCard::cardBrandFromNumber(typed));
    EXPECT_EQ(stored->expiryMonth(), card.fields.expiryMonth);
    EXPECT_EQ(stored->expiryYear(), card.fields.expiryYear);
    EXPECT_EQ(stored->state(), 0U);
    EXPECT_TRUE(stored->identifier());
    EXPECT_TRUE(std::get<0>(list(token, "business"))->empty());
  }
}

TEST_F(Services, TheProviderRefusesAsARealOneDoes) {
  start();
  const auto token = std::get<0>(createToken("visa"));
  const auto stored = std::get<0>(list(token))->front();
  auto malformed = findTestCard("visa")->fields;
  malformed.cvv = "";
  const std::pair<ErrorPtr, int> rows[] = {
      {addInstrument("mastercard", "tok_other"), 404},
      {std::get<1>(list(std::nullopt)), 404},
      {addInstrument("mastercard", token, "leisure"), 406},
      {addInstrument("declined", token), 402},
      {addInstrument(malformed, token), 422},
      {removeInstrument(stored, token, "private"), 410},
      {removeInstrument(stored, token), 0},
      {removeInstrument(stored, token), 410},
  };
  for (const auto& [error, code] : rows) {
    EXPECT_EQ(nameOf(error), code ? "PLVErrorDomain " + std::to_string(code) : "none");
  }
  for (const NullableString& key : {NullableString(""), NullableString()}) {
    provider->registerWithAPIKey(key);
    EXPECT_EQ(nameOf(std::get<1>(list(token))), "PLVErrorDomain 401");
  }
  EXPECT_TRUE(sandbox->providerInstruments().empty());
}

TEST_F(Services, TheBackendRefusesAsARealOneDoes) {
  start();
  const auto ID = std::get<1>(addCard("visa", guest))->halvoID();
  const auto none = [&](auto completion) {
    backend->addCreditCardForGuest(guest, nullptr, completion);
  };
  const std::pair<ErrorPtr, int> asGuest[] = {
      {std::get<2>(addCard("backend-refused", guest)), 422},
      {std::get<2>(addCard("visa", nullptr)), 400},
      {std::get<2>(answerTo<CardAnswer>(none)), 400},
      {std::get<1>(deleteCard("crd_other", guest)), 404},
      {std::get<1>(storeToken(std::nullopt)), 400}};
  const auto expectEach = [](const auto& rows) {
    for (const auto& [error, code] : rows) {
      EXPECT_EQ(nameOf(error), "HLVBackendErrorDomain " + std::to_string(code));
    }
  };
  expectEach(asGuest);
  EXPECT_EQ(nameOf(std::get<2>(addCard("visa", guest, std::nullopt))), "HLVArgumentErrorDomain 1");
  EXPECT_TRUE(sandbox->signIn("other@example.com"));
  const std::pair<ErrorPtr, int> asAnother[] = {
      {std::get<1>(deleteCard(ID, guest)), 403},
      {std::get<1>(deleteCard(ID, HLVSDKGuest::currentGuest())), 404}};
  expectEach(asAnother);
  sandbox->signOut();
  expectEach(std::vector{std::pair(std::get<1>(deleteCard(ID, guest)), 401)});
  EXPECT_EQ(guest->creditCards()->size(), 1U);
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
      "t", "default",
      [last, held](const Instruments&, const ErrorPtr&) mutable { last.reset(); });
  last.reset(), held.reset(), client.reset();
  constexpr std::chrono::seconds tooLong(60);
  EXPECT_EQ(freed.wait_for(tooLong), std::future_status::ready);
}

}  // namespace
}  // namespace hlv::sandbox
