#include <atomic>
#include <thread>

#include "Platform/Platform.h"
#include "Sandbox/Cards/CardRules.h"
#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::sandbox {
namespace {

std::string backendError(BackendErrorCode code) {
  return backendErrorDomain + (" " + std::to_string(static_cast<int>(code)));
}

std::string providerError(ProviderErrorCode code) {
  return providerErrorDomain + (" " + std::to_string(static_cast<int>(code)));
}

using Services = SandboxTest;

TEST_F(Services, TheProviderListsWhatItStoresAsTheCardAndTheBrandTableSpellIt) {
  start();
  for (const auto& card : testCards()) {
    if (card.effect != findTestCard("visa")->effect) continue;
    const auto [token, error] = createToken(card.name, "private");
    ASSERT_EQ(nameOf(error), "none") << card.name;
    const auto stored = std::get<0>(list(token, "private"))->back();
    EXPECT_EQ(stored->pan(), maskedPan(card.fields.pan));
    EXPECT_EQ(stored->cardBrand(), HLVSDKCreditCard::cardBrandFromNumber(card.fields.pan));
    EXPECT_EQ(stored->expiryMonth(), card.fields.expiryMonth);
    EXPECT_EQ(stored->expiryYear(), card.fields.expiryYear);
    EXPECT_EQ(stored->state(), 0U);
    EXPECT_TRUE(stored->identifier());
  }
}

TEST_F(Services, AnAddressKeepsItsTokenEvenWhenTheBackendLostIt) {
  start();
  const auto first = std::get<0>(createToken("visa"));
  const auto second = std::get<0>(createToken("mastercard"));
  EXPECT_EQ(first, second);
  EXPECT_EQ(std::get<0>(list(first))->size(), 2U);
  EXPECT_TRUE(std::get<0>(list(first, "business"))->empty());
  EXPECT_EQ(guest->paylevenToken(), std::nullopt);
  EXPECT_EQ(sandbox->providerInstruments().size(), 2U);
}

TEST_F(Services, TheProviderRefusesAsARealOneDoes) {
  start();
  const auto token = std::get<0>(createToken("visa"));
  const auto stored = std::get<0>(list(token))->front();
  EXPECT_EQ(nameOf(addInstrument("mastercard", "tok_other")),
            providerError(ProviderErrorCode::unknownToken));
  EXPECT_EQ(nameOf(std::get<1>(list(std::nullopt))),
            providerError(ProviderErrorCode::unknownToken));
  EXPECT_EQ(nameOf(addInstrument("mastercard", token, "leisure")),
            providerError(ProviderErrorCode::unknownUseCase));
  EXPECT_EQ(nameOf(addInstrument("declined", token)),
            providerError(ProviderErrorCode::cardDeclined));
  EXPECT_EQ(nameOf(removeInstrument(stored, token, "private")),
            providerError(ProviderErrorCode::instrumentGone));
  EXPECT_EQ(nameOf(removeInstrument(stored, token)), "none");
  EXPECT_EQ(nameOf(removeInstrument(stored, token)),
            providerError(ProviderErrorCode::instrumentGone));
  auto fields = findTestCard("visa")->fields;
  fields.cvv = "";
  const auto malformed = answerTo<ErrorPtr>([&](auto completion) {
    provider->addPaymentInstrument(newInstrument(fields), token, "default", completion);
  });
  EXPECT_EQ(nameOf(std::get<0>(malformed)), providerError(ProviderErrorCode::malformedCard));
  for (const NullableString& key : {NullableString(""), NullableString()}) {
    provider->registerWithAPIKey(key);
    EXPECT_EQ(nameOf(std::get<1>(list(token))), providerError(ProviderErrorCode::notRegistered));
  }
  EXPECT_TRUE(sandbox->providerInstruments().empty());
}

TEST_F(Services, TheBackendKeepsWhatTheRequestSaysAndChangesTheFieldsThatArePresent) {
  start();
  AddressFields address;
  address.street = "Hauptstr. 1";
  address.city = "Berlin";
  const auto [owner, card, error] = addCard("amex", guest, "ins_a", address);
  ASSERT_EQ(nameOf(error), "none");
  EXPECT_EQ(owner, guest);
  EXPECT_EQ(card->lastFourDigits(), "0005");
  EXPECT_EQ(card->brand(), "american-express");
  EXPECT_EQ(card->externalIdentifier(), "ins_a");
  const auto ID = card->halvoID();
  const auto updated =
      answerTo<std::shared_ptr<HLVSDKGuest>, std::shared_ptr<HLVSDKCreditCard>, ErrorPtr>(
          [&](auto completion) {
            backend->updateCreditCard(ID, {{*HLVSDKCreditCardBusinessAddressJSONKeyes(1), "Bonn"}},
                                      guest, completion);
          });
  EXPECT_EQ(std::get<1>(updated)->halvoID(), ID);
  const auto kept = sandbox->backendCards().at(0).billingAddress;
  EXPECT_EQ(kept.street, "Hauptstr. 1");
  EXPECT_EQ(kept.city, "Bonn");
}

TEST_F(Services, TheGuestIsOneObjectThatCarriesWhatTheBackendStored) {
  start();
  addFirstCard("visa");
  EXPECT_EQ(HLVSDKGuest::currentGuest(), guest);
  EXPECT_TRUE(guest->paylevenToken());
  ASSERT_EQ(guest->creditCards()->size(), 1U);
  const auto [owner, error] = deleteCard(guest->creditCards()->front()->halvoID(), guest);
  EXPECT_EQ(nameOf(error), "none");
  EXPECT_EQ(owner, guest);
  EXPECT_TRUE(guest->creditCards()->empty());
}

TEST_F(Services, TheBackendRefusesAsARealOneDoes) {
  start();
  const auto card = std::get<1>(addCard("visa", guest));
  EXPECT_EQ(nameOf(std::get<2>(addCard("backend-refused", guest))),
            backendError(BackendErrorCode::cardRefused));
  EXPECT_EQ(nameOf(std::get<2>(addCard("visa", nullptr))),
            backendError(BackendErrorCode::invalidRequest));
  EXPECT_EQ(nameOf(std::get<2>(addCard("visa", guest, std::nullopt))),
            std::string(argumentErrorDomain) + " 1");
  EXPECT_EQ(nameOf(std::get<1>(deleteCard("crd_other", guest))),
            backendError(BackendErrorCode::unknownCard));
  EXPECT_EQ(nameOf(storeToken(std::nullopt)), backendError(BackendErrorCode::invalidRequest));
  const auto noRequest =
      answerTo<std::shared_ptr<HLVSDKGuest>, std::shared_ptr<HLVSDKCreditCard>, ErrorPtr>(
          [&](auto completion) { backend->addCreditCardForGuest(guest, nullptr, completion); });
  EXPECT_EQ(nameOf(std::get<2>(noRequest)), backendError(BackendErrorCode::invalidRequest));
  sandbox->signIn("other@example.com");
  EXPECT_EQ(nameOf(std::get<1>(deleteCard(card->halvoID(), guest))),
            backendError(BackendErrorCode::foreignGuest));
  EXPECT_EQ(nameOf(std::get<1>(deleteCard(card->halvoID(), HLVSDKGuest::currentGuest()))),
            backendError(BackendErrorCode::unknownCard));
  sandbox->signOut();
  EXPECT_EQ(nameOf(std::get<1>(deleteCard(card->halvoID(), guest))),
            backendError(BackendErrorCode::notSignedIn));
  EXPECT_EQ(guest->creditCards()->size(), 1U);
}

TEST_F(Services, WithoutANetworkBothServicesFailAndStoreNothingAndNoFaultIsUsedUp) {
  start();
  arm("createUserToken", "never");
  sandbox->setReachable(false);
  const auto offline = std::string(urlErrorDomain) + " 1";
  EXPECT_EQ(nameOf(std::get<1>(createToken("visa"))), offline);
  EXPECT_EQ(nameOf(std::get<2>(addCard("visa", guest))), offline);
  EXPECT_TRUE(sandbox->providerInstruments().empty());
  EXPECT_TRUE(sandbox->backendCards().empty());
  EXPECT_EQ(sandbox->faults().armed().size(), 1U);
}

TEST_F(Services, AnswersComeFromTheThreadOfTheService) {
  start();
  bool wasMain = true;
  backend->fetchGuestCreditCards(
      guest, [&](const Cards&, const ErrorPtr&) { wasMain = Platform::current()->isMainThread(); });
  pumpUntilQuiet();
  EXPECT_FALSE(wasMain);
  std::get<1>(createToken("visa"));
  std::vector<std::string> threads;
  const auto operations = sandbox->journal().last(1);
  for (const auto& event : operations.at(0).events) {
    if (event.to == "kit" && event.from != "app") threads.push_back(event.from + event.thread);
  }
  EXPECT_EQ(threads, (std::vector<std::string>{"backendservice-1", "providerservice-2"}));
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
  Host::install(nullptr);
  guest.reset();
  backend.reset();
  auto lastReferences = std::make_shared<std::pair<decltype(sandbox), decltype(provider)>>();
  auto client = provider;
  lastReferences->first = std::move(sandbox);
  lastReferences->second = std::move(provider);
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
