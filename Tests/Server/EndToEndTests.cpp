// The kit over HTTP, from a guest's first card to a synchronisation.
#include <SQLiteCpp/SQLiteCpp.h>

#include "Client/RemoteGuest.h"
#include "Public/Managers/HLVSDKPaylevenPaymentInstrumentsSynchronizer.h"
#include "Tests/Server/ServerTest.h"

namespace hlv::sandbox::server {
namespace {

using client::RemoteGuest;
using sandbox::Fault;
using EndToEnd = ServerTest;

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
  const auto updated = answerTo<Outcome>([&, ID = first->halvoID()](auto completion) {
    manager->updatePaymentInstrument(ID, sandbox::EnteredAddress::make(address), guest, completion);
  });
  EXPECT_EQ(nameOf(std::get<2>(updated)), "none");
  EXPECT_EQ(sandbox->backendCards()[0].billingAddress.city, "Köln");

  const auto removed = answerTo<sandbox::GuestAnswer>([&](auto completion) {
    manager->deletePaymentInstrumentWithID(second->halvoID(), "business", guest, completion);
  });
  EXPECT_EQ(nameOf(std::get<1>(removed)), "none");
  EXPECT_EQ(guest->creditCards()->size(), 1U);
  EXPECT_EQ(sandbox->providerInstruments().size(), 1U);

  ASSERT_TRUE(sandbox->tester()->addOrphanInstrument(sandbox::Typed("no-identifier")));
  const auto synchronizer =
      HLVSDKPaylevenPaymentInstrumentsSynchronizer::initWithAPIManager(backend, provider);
  const auto synchronized = answerTo<std::tuple<bool, ErrorPtr>>([&](auto completion) {
    synchronizer->synchronizePaymentInstrumentsForGuest(guest, completion);
  });
  EXPECT_EQ(synchronized, std::tuple(true, nullptr));
  const auto sides = remote->sides();
  EXPECT_EQ(nameOf(sides.error), "none");
  EXPECT_EQ(sides.backend.size(), 1U);
  ASSERT_EQ(sides.provider.size(), 1U);
  EXPECT_EQ(sides.provider[0].identifier, sides.backend[0].externalIdentifier);

  // Nothing of this is known any more, and yet no revision comes twice.
  const auto known = std::dynamic_pointer_cast<RemoteGuest>(guest);
  const auto before = known->record().revision;
  sandbox->reset();
  ASSERT_EQ(nameOf(remote->signIn(email)), "none");
  EXPECT_EQ(guest->creditCards()->size(), 0U);
  ASSERT_TRUE(std::get<1>(add("visa")));
  EXPECT_GT(known->record().revision, before);
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
    api->updateCurrentGuestWithRequest(update, note), pumpUntilQuiet();
    api->addCreditCardForGuest(guest, nullptr, note), pumpUntilQuiet();
    for (const auto& ID : {NullableString(), NullableString(""), NullableString("crd_x/y?z")}) {
      api->deleteCreditCardWithID(ID, guest, note), pumpUntilQuiet();
      api->updateCreditCard(ID, {}, guest, note), pumpUntilQuiet();
    }
    api->fetchGuestCreditCards(std::make_shared<RemoteGuest>("other@example.com"), note),
        pumpUntilQuiet();
    for (const auto* card : {"declined", "visa"}) {
      client->createUserToken(email, instrument(card), "nowhere", note), pumpUntilQuiet();
      client->createUserToken(std::nullopt, instrument(card), "default", note), pumpUntilQuiet();
      client->addPaymentInstrument(instrument(card), token, "default", note), pumpUntilQuiet();
      client->addPaymentInstrument(instrument(card), "tok", std::nullopt, note), pumpUntilQuiet();
    }
    client->getPaymentInstrumentsList("tok_ä", "default", note), pumpUntilQuiet();
    arm("fetchGuestCreditCards", "error", [](auto& fault) { fault.code = 4711; });
    api->fetchGuestCreditCards(guest, note), pumpUntilQuiet();
    sandbox->setReachable(false);
    api->fetchGuestCreditCards(guest, note), pumpUntilQuiet();
    client->getPaymentInstrumentsList(token, "default", note), pumpUntilQuiet();
    sandbox->setReachable(true);
    client->registerWithAPIKey(std::nullopt);
    client->getPaymentInstrumentsList(token, "default", note), pumpUntilQuiet();
    client->registerWithAPIKey("key");
    return errors;
  };
  const auto expected = everyError(embedded);
  EXPECT_EQ(expected.size(), 22U);
  EXPECT_EQ(everyError(remote), expected);
}

std::string withoutID(std::string reply) {
  for (auto at = reply.find("req_"); at != std::string::npos; at = reply.find("req_", at + 1)) {
    reply.replace(at, 24, 24, 'x');
  }
  return reply;
}

TEST_F(EndToEnd, EveryFaultOfAReplyMeetsItsBytes) {
  serve();
  const auto meet = [this](const Json& members) {
    Json fault = {{"operation", "fetchGuestCreditCards"}};
    fault.update(members);
    require(200, askProvider("POST /v1/sandbox/faults", fault));
    RawClient client(portOf(server->backendURL()));
    client.send(requestOf("GET " + guestPath() + "/cards", "", "Connection: close\r\n"));
    return client;
  };
  const auto whole = withoutID(meet({{"kind", "delay"}, {"delay_ms", 1}}).receiveRest().bytes);
  const auto half = whole.substr(0, whole.size() / 2);
  const struct {
    Json fault;
    std::string bytes;
    bool isReset;
    int status;
  } rows[] = {
      {{{"kind", "refused"}}, "", true, 0},
      {{{"kind", "reset"}}, half, true, 0},
      {{{"kind", "garbage"}}, "This is no reply of a service.\r\n\r\n", false, 0},
      {{{"kind", "twice"}}, whole + whole, false, 200},
      {{{"kind", "cut"}, {"bytes", 100}}, whole.substr(0, 100), true, 0},
      {{{"kind", "cut"}, {"bytes", 1'000'000}}, whole, true, 200},
      {{{"kind", "slow"}, {"bytes_per_second", 10'000}}, whole, false, 200},
  };
  std::string statuses, expected;
  for (const auto& row : rows) {
    const auto rest = meet(row.fault).receiveRest();
    EXPECT_EQ(withoutID(rest.bytes), row.bytes) << row.fault;
    EXPECT_EQ(rest.wasReset, row.isReset) << row.fault;
    expected += " " + std::to_string(row.status);
  }
  auto stalled = meet({{"kind", "stalled"}});
  const auto line = stalled.receiveUntil("\r\n");
  const auto log = require(200, askProvider("GET /v1/sandbox/requests?fault=any"));
  for (std::size_t i = 1; i < log["requests"].size(); ++i) {
    statuses += " " + log["requests"][i]["status"].dump();
  }
  EXPECT_EQ(statuses, expected);
  server.reset();
  EXPECT_EQ(withoutID(line + stalled.receiveRest().bytes), half);
}

TEST_F(EndToEnd, ATesterDoesTheSameFromElsewhere) {
  serveAndConnect();
  add("visa");
  const auto tester = remote->tester();
  Fault fault{.operation = sandbox::Operation::listInstruments,
              .kind = sandbox::FaultKind::delay,
              .remaining = std::nullopt,
              .delayMilliseconds = 1,
              .probability = 50,
              .useCase = "private"};
  EXPECT_TRUE(tester->arm(fault));
  EXPECT_TRUE(tester->arm(fault));
  ASSERT_EQ(tester->armed().size(), 2U);
  EXPECT_EQ(tester->armed(), sandbox->tester()->armed());
  const auto first = tester->armed().front();
  const auto second = tester->armed().back();
  auto changed = first;
  changed.kind = sandbox::FaultKind::noList;
  EXPECT_EQ(tester->changeFault(first.number, changed), changed);
  EXPECT_EQ(tester->armed().front(), changed);
  tester->removeFault(first.number);
  EXPECT_EQ(sandbox->tester()->armed(), std::vector{second});
  fault.kind = sandbox::FaultKind::noToken;
  EXPECT_EQ(tester->arm(fault).problem(), sandbox->tester()->arm(fault).problem());
  tester->clearFaults();

  arm("fetchGuestCreditCards", "error");
  EXPECT_EQ(remote->sides().backend.size(), 1U) << "to look is no call of a service";
  EXPECT_EQ(askBackend("GET " + guestPath() + "/cards").status, 500);
  ASSERT_EQ(tester->firings().size(), 1U);
  EXPECT_EQ(tester->firings()[0].operation, sandbox::Operation::fetchCards);
  EXPECT_TRUE(tester->makeScenario(sandbox::Scenario::sameCardTwice));
  EXPECT_TRUE(tester->addOrphanInstrument(sandbox::Typed("amex")));
  EXPECT_EQ(remote->sides().provider.size(), 3U);
  tester->setNetworkOn(false);
  EXPECT_FALSE(client::SandboxClient(server->providerURL()).describe("default").isNetworkOn);
  EXPECT_EQ(tester->reset().guests, 0);
  server.reset();
  EXPECT_FALSE(tester->makeScenario(sandbox::Scenario::lostToken));
  EXPECT_THROW(tester->armed(), client::ClientError);
}

TEST_F(EndToEnd, ReadersWaitForNoWriter) {
  serve();
  SQLite::Database other(storePath(), SQLite::OPEN_READWRITE);
  other.exec("BEGIN IMMEDIATE");
  RawClient writing(portOf(server->backendURL()));
  writing.send(requestOf("PUT " + guestPath("x@y")));
  for (const auto* request : {"", "/cards"}) {
    EXPECT_EQ(askBackend("GET " + guestPath() + request).status, 200);
  }
  other.exec("COMMIT");
  EXPECT_EQ(writing.receive().status, 200);
}

TEST_F(EndToEnd, OneServerAtATimeListensToThisMachineUnlessTheWordIsGiven) {
  serve();
  EXPECT_FALSE(Server::open(options()));
  auto other = options();
  other.storePath = path("other");
  for (const char* address : {"0.0.0.0", "localhost", ""}) {
    other.listening.address = address;
    EXPECT_FALSE(Server::open(other)) << address;
  }
  EXPECT_FALSE(std::filesystem::exists(other.storePath)) << "a start that fails changes nothing";
  other.listening.address = "0.0.0.0";
  other.listening.beyondThisMachine = true;
  EXPECT_TRUE(Server::open(other));
  other.backendPort = portOf(server->backendURL());
  other.listening.address = "127.0.0.1";
  other.storePath = path("third");
  EXPECT_FALSE(Server::open(other)) << "the port is taken";
  EXPECT_FALSE(std::filesystem::exists(other.storePath));
}

}  // namespace
}  // namespace hlv::sandbox::server
