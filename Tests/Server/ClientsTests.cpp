// Many clients at once: none gets what is another's, and none waits for another.
#include <SQLiteCpp/SQLiteCpp.h>

#include <thread>

#include "Tests/Server/ServerTest.h"

namespace hlv::server {
namespace {

using Clients = ServerTest;

TEST_F(Clients, AGuestIsChangedWhileAnotherSignsIn) {
  serve();
  const std::string names[] = {"a@example.com", "b@example.com"};
  for (const auto& name : names) require(200, askBackend("PUT " + guestPath(name)));
  constexpr int times = 150;
  std::thread signingIn([&] {
    RawClient client(portOf(server->backendURL()));
    for (int i = 0; i < times; ++i) {
      client.send(requestOf("PUT " + guestPath(names[1])));
      EXPECT_EQ(bodyOf(client.receive())["email"], names[1]);
    }
  });
  RawClient client(portOf(server->backendURL()));
  for (int i = 0; i < times; ++i) {
    const auto token = "tok_" + std::to_string(i);
    client.send(requestOf("PATCH " + guestPath(names[0]), Json{{"payment_token", token}}.dump()));
    const auto changed = bodyOf(client.receive())["guest"];
    EXPECT_EQ(changed["email"], names[0]);
    EXPECT_EQ(changed["payment_token"], token);
  }
  signingIn.join();
  EXPECT_EQ(bodyOf(askBackend("GET " + guestPath(names[1])))["payment_token"], nullptr);
}

TEST_F(Clients, AReplyNeedNotGrowWithTheGuestsCards) {
  serve();
  const auto cards = guestPath() + "/cards";
  const auto first = askBackend("POST " + cards, newCard(), minimal);
  const auto added = require(201, first);
  EXPECT_EQ(first.header("Preference-Applied"), "return=minimal");
  EXPECT_FALSE(added["guest"].contains("credit_cards"));
  EXPECT_EQ(added["guest"]["email"], email);
  const auto second = askBackend("POST " + cards, newCard("ins_y"), minimal);
  EXPECT_EQ(second.body.size(), first.body.size());
  const auto card = cards + "/" + added["credit_card"]["id"].get<std::string>();
  for (const auto& [request, body] :
       {std::pair<std::string, Json>("PATCH " + card, {{"city", "Köln"}}),
        {"PATCH " + guestPath(), {{"payment_token", "tok_y"}}},
        {"DELETE " + card, nullptr}}) {
    EXPECT_FALSE(require(200, askBackend(request, body, minimal))["guest"].contains("credit_cards"))
        << request;
  }
  EXPECT_EQ(bodyOf(askBackend("GET " + guestPath()))["credit_cards"].size(), 1U);
}

TEST_F(Clients, CallsThatNobodyRepliesToHoldUpNobodyAndEndWithTheirClients) {
  serve();
  constexpr std::size_t held = 300;
  require(200, askProvider("POST /v1/sandbox/faults", {{"operation", "fetchGuestCreditCards"},
                                                       {"kind", "never"},
                                                       {"times", nullptr}}));
  auto stream = listeningAt("GET /v1/sandbox/requests/stream");
  stream.receiveUntil("\r\n\r\n");
  std::vector<RawClient> waiting;
  for (std::size_t i = 0; i < held; ++i) {
    waiting.emplace_back(portOf(server->backendURL()));
    waiting.back().send(requestOf("GET " + guestPath() + "/cards"));
  }
  for (const auto* who : {"x@y", "y@z"}) {
    require(200, askBackend("PUT " + guestPath(who)));
    require(201, askProvider("POST /v1/users", newUser("visa", who)));
    EXPECT_EQ(require(200, askProvider("GET /v1/sandbox/faults"))["faults"].size(), 1U);
  }
  waiting.clear();
  for (std::size_t i = 0; i < held; ++i) {
    EXPECT_NE(stream.receiveUntil("\"status\":0,"), "") << "it is on record without a reply";
  }
  require(200, askProvider("DELETE /v1/sandbox/faults"));
  require(200, askBackend("GET " + guestPath() + "/cards"));
}

TEST_F(Clients, ReadersWaitForNoWriter) {
  serve();
  SQLite::Database other(storePath(), SQLite::OPEN_READWRITE);
  other.exec("BEGIN IMMEDIATE");
  RawClient writing(portOf(server->backendURL()));
  writing.send(requestOf("PUT " + guestPath("x@y")));
  for (const auto* request : {"", "/cards"}) {
    EXPECT_EQ(askBackend("GET " + guestPath() + request).status, 200);
  }
  EXPECT_EQ(askProvider("GET /v1/sandbox/faults").status, 200);
  other.exec("COMMIT");
  EXPECT_EQ(writing.receive().status, 200);
}

}  // namespace
}  // namespace hlv::server
