// What a client need not wait for.
#include <SQLiteCpp/SQLiteCpp.h>

#include "Tests/Server/ServerTest.h"

namespace hlv::server {
namespace {

using Clients = ServerTest;

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
