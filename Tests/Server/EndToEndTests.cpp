// A host that speaks to a server, beside the embedded one; and the server itself.
#include <SQLiteCpp/SQLiteCpp.h>

#include "Client/RemoteGuest.h"
#include "Tests/Server/ServerTest.h"

namespace hlv::sandbox::server {
namespace {

using client::RemoteGuest;
using EndToEnd = ServerTest;

/// An error as whoever reads it sees it.
std::string described(const ErrorPtr& error) {
  if (!error) return "none";
  return nameOf(error) + " " + error->localizedDescription().value_or("-") + " " +
         error->developerMessage().value_or("-");
}

TEST_F(EndToEnd, AnErrorIsTheSameAsTheEmbeddedOne) {
  serveAndConnect();
  addVisa();
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
      const Typed card(name);
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
  addVisa();
  const auto tester = remote->tester();
  Fault fault{.operation = Operation::listInstruments, .useCase = "private"};
  fault.number = tester->arm(fault).value();
  EXPECT_EQ(tester->armed(), std::vector{fault});
  EXPECT_EQ(sandbox->tester()->armed(), std::vector{fault});
  tester->clearFaults();
  EXPECT_TRUE(sandbox->tester()->armed().empty());

  arm("fetchGuestCreditCards", "error");
  EXPECT_EQ(remote->sides().backend.size(), 1U) << "to look is no call of a service";
  const client::SandboxClient client(server->providerURL());
  const auto snapshot = client.snapshot("default").id;
  EXPECT_EQ(client.snapshots().size(), 1U);
  client.removeSnapshot(snapshot);
  EXPECT_TRUE(client.snapshots().empty());
  EXPECT_TRUE(client.setClock("default", "2099-12-31T00:00:00Z").starts_with("2099-12-31T"));
  const auto known = std::dynamic_pointer_cast<RemoteGuest>(guest);
  const auto before = known->record().revision;
  EXPECT_EQ(client.reset("default").guests, 0);
  ASSERT_EQ(nameOf(remote->signIn(email)), "none");
  EXPECT_EQ(guest->creditCards()->size(), 0U);
  addVisa();
  EXPECT_GT(known->record().revision, before) << "none comes twice";
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
