// The kit over HTTP, from a guest's first card to a synchronisation.
#include <thread>

#include "Services/Remote/RemoteGuest.h"
#include "Tests/Services/ServicesTest.h"

namespace hlv::services {
namespace {

using EndToEnd = ServicesTest;

TEST_F(EndToEnd, EveryCardOperationChangesBothSidesAsItDoesEmbedded) {
  serveAndConnect();
  const auto [owner, first, error] = add("visa");
  ASSERT_EQ(nameOf(error), "none");
  EXPECT_EQ(owner, guest);
  EXPECT_EQ(first->lastFourDigits(), "1111");
  EXPECT_GT(length(guest->paylevenToken()), 0U);

  const auto second = std::get<1>(add("mastercard", "business"));
  ASSERT_TRUE(second);
  EXPECT_EQ(sandbox->backendCards().size(), 2U);
  EXPECT_EQ(sandbox->providerInstruments()[1].useCase, "business");
  EXPECT_EQ(second->externalIdentifier(), sandbox->providerInstruments()[1].identifier);

  sandbox::AddressFields address;
  address.city = "Köln";
  EXPECT_EQ(nameOf(std::get<2>(update(first->halvoID(), address))), "none");
  EXPECT_EQ(sandbox->backendCards()[0].billingAddress.city, "Köln");

  EXPECT_EQ(nameOf(std::get<2>(remove(second->halvoID(), "business"))), "none");
  EXPECT_EQ(guest->creditCards()->size(), 1U);
  EXPECT_EQ(sandbox->providerInstruments().size(), 1U);

  ASSERT_EQ(sandbox->plantInstrument(sandbox::Typed("amex")), "");
  ASSERT_EQ(sandbox->plantInstrument(sandbox::Typed("no-identifier")), "");
  EXPECT_TRUE(synchronize());
  settle();
  const auto sides = remote->sides();
  EXPECT_EQ(nameOf(sides.error), "none");
  EXPECT_EQ(sides.backend.size(), 1U);
  ASSERT_EQ(sides.provider.size(), 1U);
  EXPECT_EQ(sides.provider[0].identifier, sides.backend[0].externalIdentifier);
}

TEST_F(EndToEnd, AnAnswerThatComesLateTakesNothingBack) {
  serveAndConnect();
  const auto known = std::dynamic_pointer_cast<RemoteGuest>(guest);
  auto late = known->record();
  add("visa");
  // One change is the token's and one the card's; their answers may come in either order.
  EXPECT_EQ(known->record().revision, late.revision + 2);
  late.revision += 1;
  known->learn(late);
  EXPECT_GT(length(guest->paylevenToken()), 0U);
  EXPECT_EQ(guest->creditCards()->size(), 1U);

  // Whoever signs in may have found another backend there.
  late.revision += 1'000;
  known->learn(late);
  EXPECT_EQ(guest->creditCards()->size(), 0U);
  ASSERT_EQ(remote->signIn(email), nullptr);
  EXPECT_EQ(guest->creditCards()->size(), 1U);

  const auto before = known->record().revision;
  sandbox->reset();
  ASSERT_EQ(remote->signIn(email), nullptr);
  EXPECT_EQ(guest->creditCards()->size(), 0U);
  EXPECT_EQ(known->record().revision, before);
}

/// An error as whoever reads it sees it.
std::string described(const ErrorPtr& error) {
  if (!error) return "none";
  return nameOf(error) + " " + error->localizedDescription().value_or("-") + " " +
         error->developerMessage().value_or("-");
}

TEST_F(EndToEnd, AnErrorIsTheSameAsTheEmbeddedOne) {
  serveAndConnect();
  add("visa");
  const auto embedded = sandbox->host();
  const auto everyError = [&](const std::shared_ptr<Host>& host) {
    std::vector<std::string> errors;
    const auto note = [&errors](auto... results) {
      errors.push_back(described(std::get<sizeof...(results) - 1>(std::tie(results...))));
    };
    const auto settled = [&] {
      pumpUntilQuiet();
      settle();
    };
    const auto api = host->apiManager();
    const auto client = host->inAppClient();
    const auto token = guest->paylevenToken();
    const auto instrument = [&](const char* name) {
      const sandbox::Typed card(name);
      return host->makeCreditCardPaymentInstrument(card.pan, card.expiryMonth, card.expiryYear,
                                                   card.cvv, card.cardHolder);
    };
    client->registerWithAPIKey("key");
    const auto update = host->makeUpdateGuestRequestInfo();
    api->updateCurrentGuestWithRequest(update, note), settled();
    api->addCreditCardForGuest(guest, nullptr, note), settled();
    for (const auto& ID : {NullableString(), NullableString(""), NullableString("crd_x/y?z")}) {
      api->deleteCreditCardWithID(ID, guest, note), settled();
      api->updateCreditCard(ID, {}, guest, note), settled();
    }
    api->fetchGuestCreditCards(nullptr, note), settled();
    api->fetchGuestCreditCards(std::make_shared<RemoteGuest>("other@example.com"), note), settled();
    for (const auto* card : {"declined", "visa"}) {
      client->createUserToken(email, instrument(card), "nowhere", note), settled();
      client->createUserToken(std::nullopt, instrument(card), "default", note), settled();
      client->addPaymentInstrument(instrument(card), token, "default", note), settled();
      client->addPaymentInstrument(instrument(card), "tok", std::nullopt, note), settled();
    }
    client->addPaymentInstrument(instrument("visa"), std::nullopt, "default", note), settled();
    client->addPaymentInstrument(nullptr, token, "default", note), settled();
    client->getPaymentInstrumentsList("tok_ä", "default", note), settled();
    client->removePaymentInstrument(nullptr, "default", token, note), settled();
    EXPECT_EQ(arm("fetchGuestCreditCards", "error", [](auto& fault) { fault.code = 4711; }), "");
    api->fetchGuestCreditCards(guest, note), settled();
    sandbox->setReachable(false);
    api->fetchGuestCreditCards(guest, note), settled();
    client->getPaymentInstrumentsList(token, "default", note), settled();
    sandbox->setReachable(true);
    client->registerWithAPIKey(std::nullopt);
    client->getPaymentInstrumentsList(token, "default", note), settled();
    client->registerWithAPIKey("key");
    return errors;
  };
  const auto expected = everyError(embedded);
  EXPECT_EQ(expected.size(), 26U);
  EXPECT_EQ(everyError(remote), expected);
}

TEST_F(EndToEnd, TheUsualFaultsComeThrough) {
  serveAndConnect();
  ASSERT_EQ(arm("createUserToken", "no-token"), "");
  EXPECT_EQ(nameOf(std::get<2>(add("visa"))), "HLVArgumentErrorDomain 2");
  ASSERT_EQ(arm("createUserToken", "twice"), "");
  ASSERT_EQ(arm("addCreditCardForGuest", "delay", [](auto& fault) { fault.delayMilliseconds = 1; }),
            "");
  EXPECT_TRUE(std::get<1>(add("visa")));
  EXPECT_EQ(sandbox->backendCards().size(), 1U);
  ASSERT_EQ(arm("getPaymentInstrumentsList", "no-list"), "");
  const auto [list, error] = only<sandbox::ListAnswer>([&](auto completion) {
    provider->getPaymentInstrumentsList(guest->paylevenToken(), "default", completion);
  });
  EXPECT_FALSE(list);
  EXPECT_EQ(nameOf(error), "none");
}

TEST_F(EndToEnd, ARequestThatIsNeverAnsweredEndsWithoutAnAnswerAtTheLimit) {
  serve();
  ASSERT_EQ(sandbox->signIn(email), "");
  ASSERT_EQ(arm("createUserToken", "never"), "");
  ASSERT_EQ(arm("fetchGuestCreditCards", "never"), "");
  reopenImpatiently();
  connect(services->backendURL(), services->providerURL());
  const auto error = std::get<2>(add("visa"));
  EXPECT_EQ(nameOf(error), "HLVPaymentErrorDomain 10") << "the kit wraps the provider's error";
  EXPECT_EQ(ask(services->backendURL(), "GET " + guestPath() + "/cards").status, 0);
}

TEST_F(EndToEnd, ATesterDoesTheSameFromElsewhere) {
  serveAndConnect();
  add("visa");
  const auto tester = remote->tester();
  sandbox::Fault fault;
  fault.operation = "getPaymentInstrumentsList";
  fault.kind = "delay";
  fault.remaining = std::nullopt;
  fault.delayMilliseconds = 1;
  fault.spreadMilliseconds = 2;
  fault.probability = 50;
  fault.code = 7;
  fault.useCase = "private";
  EXPECT_EQ(tester->arm(fault), "");
  EXPECT_EQ(tester->armed(), sandbox->faults().armed());
  EXPECT_EQ(sandbox->faults().armed().at(0).probability, 50);
  fault.kind = "no-token";
  EXPECT_EQ(tester->arm(fault), sandbox->faults().arm(fault));
  tester->clearFaults();
  ASSERT_EQ(arm("fetchGuestCreditCards", "error"), "");
  EXPECT_EQ(remote->sides().backend.size(), 1U) << "to look is no call of a service";
  EXPECT_EQ(ask(services->backendURL(), "GET " + guestPath() + "/cards").status, 500);
  ASSERT_EQ(tester->firings().size(), 1U);
  EXPECT_EQ(tester->firings()[0].operation, "fetchGuestCreditCards");
  EXPECT_EQ(tester->makeScene("same-card-twice"), "");
  EXPECT_EQ(tester->plantInstrument(sandbox::Typed("amex")), "");
  EXPECT_EQ(remote->sides().provider.size(), 3U);
  EXPECT_EQ(tester->makeScene("x"), sandbox->makeScene("x"));
  services.reset();
  EXPECT_NE(tester->makeScene("lost-token"), "");
  EXPECT_THROW(tester->armed(), std::runtime_error);
}

TEST_F(EndToEnd, ServicesThatEndLetWaitingRequestsGo) {
  serveAndConnect();
  ASSERT_EQ(arm("fetchGuestCreditCards", "never"), "");
  std::thread waiting([url = services->backendURL()] {
    EXPECT_EQ(ask(url, "GET " + guestPath() + "/cards").status, 0);
  });
  while (sandbox->faults().firings().empty()) std::this_thread::yield();
  services.reset();
  waiting.join();
}

TEST_F(EndToEnd, OnlyThisMachineIsListenedToUnlessTheWordIsGiven) {
  serve();
  ServicesOptions options;
  for (const char* address : {"0.0.0.0", "localhost", "127.0.0.2", ""}) {
    options.listening.address = address;
    EXPECT_FALSE(Services::open(sandbox, options).services) << address;
  }
  options.listening.address = "0.0.0.0";
  options.listening.beyondThisMachine = true;
  EXPECT_TRUE(Services::open(sandbox, options).services);
  options.backendPort = std::stoi(services->backendURL().substr(17));
  options.listening.address = "127.0.0.1";
  EXPECT_FALSE(Services::open(sandbox, options).services) << "the port is taken";
}

}  // namespace
}  // namespace hlv::services
