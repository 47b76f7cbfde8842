#include <atomic>
#include <thread>

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
  const std::pair<ErrorPtr, ProviderErrorCode> rows[] = {
      {addInstrument("mastercard", "tok_other"), ProviderErrorCode::unknownToken},
      {std::get<1>(list(std::nullopt)), ProviderErrorCode::unknownToken},
      {addInstrument("mastercard", token, "leisure"), ProviderErrorCode::unknownUseCase},
      {addInstrument("declined", token), ProviderErrorCode::cardDeclined},
      {addInstrument(malformed, token), ProviderErrorCode::malformedCard},
      {removeInstrument(stored, token, "private"), ProviderErrorCode::instrumentGone},
      {removeInstrument(stored, token), ProviderErrorCode{}},
      {removeInstrument(stored, token), ProviderErrorCode::instrumentGone},
  };
  for (const auto& [error, code] : rows) {
    const auto number = static_cast<int>(code);
    EXPECT_EQ(nameOf(error), number ? "PLVErrorDomain " + std::to_string(number) : "none");
  }
  for (const NullableString& key : {NullableString(""), NullableString()}) {
    provider->registerWithAPIKey(key);
    EXPECT_EQ(nameOf(std::get<1>(list(token))), "PLVErrorDomain 401");
  }
  EXPECT_TRUE(sandbox->providerInstruments().empty());
}

TEST_F(Services, TheBackendRefusesAsARealOneDoes) {
  start();
  const auto card = std::get<1>(addCard("visa", guest));
  const auto refusalOf = [&](const auto& answer, BackendErrorCode code) {
    const auto& error = std::get<ErrorPtr>(answer);
    EXPECT_EQ(nameOf(error), "HLVBackendErrorDomain " + std::to_string(static_cast<int>(code)));
  };
  refusalOf(addCard("backend-refused", guest), BackendErrorCode::cardRefused);
  refusalOf(addCard("visa", nullptr), BackendErrorCode::invalidRequest);
  EXPECT_EQ(nameOf(std::get<2>(addCard("visa", guest, std::nullopt))),
            std::string(argumentErrorDomain) + " 1");
  refusalOf(deleteCard("crd_other", guest), BackendErrorCode::unknownCard);
  refusalOf(storeToken(std::nullopt), BackendErrorCode::invalidRequest);
  refusalOf(answerTo<CardAnswer>([&](auto completion) {
              backend->addCreditCardForGuest(guest, nullptr, completion);
            }),
            BackendErrorCode::invalidRequest);
  EXPECT_TRUE(sandbox->signIn("other@example.com"));
  refusalOf(deleteCard(card->halvoID(), guest), BackendErrorCode::foreignGuest);
  refusalOf(deleteCard(card->halvoID(), HLVSDKGuest::currentGuest()),
            BackendErrorCode::unknownCard);
  sandbox->signOut();
  refusalOf(deleteCard(card->halvoID(), guest), BackendErrorCode::notSignedIn);
  EXPECT_EQ(guest->creditCards()->size(), 1U);
}

TEST_F(Services, AnswersComeFromTheThreadOfTheService) {
  start();
  addCard("visa", guest);
  createToken("visa");
  std::string threads;
  const auto operations = sandbox->journal().last(1);
  for (const auto& event : operations.at(0).events) {
    if (event.to == "kit" && event.from != "app") threads += event.from + event.thread + " ";
  }
  EXPECT_EQ(threads, "backendservice-1 providerservice-2 ");
}

TEST_F(Services, ASandboxThatIsLetGoInsideAnAnswerFreesWhatStillWaits) {
  start();
  const auto token = std::make_shared<int>(0);
  // Each callback holds the token; the second one waits for a day and is never called.
  arm("getPaymentInstrumentsList", "delay", [](Fault& fault) {
    fault.delayMilliseconds = 24LL * 60 * 60 * 1000;
    fault.useCase = "private";
  });
  provider->getPaymentInstrumentsList("t", "private", [token](const Instruments&, const ErrorPtr&) {
    FAIL() << "answered after all";
  });
  auto client = provider;
  auto lastReferences = std::make_shared<std::pair<decltype(sandbox), decltype(provider)>>(
      std::move(sandbox), std::move(provider));
  stop();
  std::atomic<bool> done = false;
  client->getPaymentInstrumentsList(
      "t", "default", [lastReferences, &done, token](const Instruments&, const ErrorPtr&) mutable {
        lastReferences.reset();
        done = true;
      });
  lastReferences.reset();
  client.reset();
  // The last to go is the store; its log goes with it.
  while (!done || token.use_count() > 1 || std::filesystem::exists(storePath() + "-wal")) {
    std::this_thread::yield();
  }
}

}  // namespace
}  // namespace hlv::sandbox
