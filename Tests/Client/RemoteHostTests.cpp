// What a remote host sends, and what it makes of the replies.
#include <atomic>
#include <utility>

#include "Client/RemoteGuest.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Tests/Client/ClientTest.h"

namespace hlv::client {
namespace {

using Request = CannedServer::Request;

/// The reply to a sign-in.
std::string signedIn(const std::string& session) {
  return CannedServer::http(
      R"({"email":"guest@example.com","revision":1,"payment_token":null,"credit_cards":[],)"
      R"("session":")" +
      session + "\"}");
}

/// Of a backend that hands out one session after another.
CannedServer::Script sessionScript() {
  return [made = std::make_shared<std::atomic<int>>(0)](const Request& request) {
    std::string bytes = CannedServer::http("{\"credit_cards\":[],\"instruments\":[]}");
    if (request.method == "PUT") bytes = signedIn("ses_" + std::to_string(++*made));
    if (request.method == "DELETE") bytes = "HTTP/1.1 204 No Content\r\n\r\n";
    return CannedServer::Reply{bytes, Then::next};
  };
}

/// The methods of the requests, each with the session that it carried.
std::vector<std::string> sessionsOf(const CannedServer& server) {
  std::vector<std::string> sessions;
  for (const auto& request : server.requests()) {
    sessions.push_back(request.method + " " + request.authorization.value_or(""));
  }
  return sessions;
}

using RemoteHostTest = ClientTest;

TEST_F(RemoteHostTest, ASessionIsSentToItsBackendUntilTheGuestSignsOut) {
  const CannedServer server(sessionScript());
  const CannedServer other(sessionScript());
  connect(server);
  fetchCards();
  ASSERT_EQ(remote->signIn(email), nullptr);
  fetchCards();
  list("tok");
  // Another process over the same store.
  connect(server);
  fetchCards();
  ASSERT_EQ(remote->signIn(email), nullptr);
  pumpUntilQuiet();
  EXPECT_EQ(remote->signOut(), nullptr);
  EXPECT_EQ(remote->signOut(), nullptr) << "nothing is left to end";
  fetchCards();
  EXPECT_EQ(sessionsOf(server), (std::vector<std::string>{
                                    "GET ", "PUT ", "GET Bearer ses_1", "GET ", "GET Bearer ses_1",
                                    "PUT ", "DELETE Bearer ses_1", "DELETE Bearer ses_2", "GET "}));
  ASSERT_EQ(remote->signIn(email), nullptr);
  connect(other);
  fetchCards();
  EXPECT_EQ(sessionsOf(other), (std::vector<std::string>{"GET "}));
}

TEST_F(RemoteHostTest, SigningOutForgetsTheSessionWhateverTheBackendSays) {
  const auto notSignedIn = CannedServer::http(
      "{\"error\":{\"code\":\"not-signed-in\",\"domain\":\"HLVBackendErrorDomain\","
      "\"number\":401,\"message\":\"Nobody is signed in.\"}}",
      "401 Unauthorized");
  const std::pair<std::string, std::string> rows[] = {{notSignedIn, "none"},
                                                      {"", "HLVTransportErrorDomain 3"}};
  for (const auto& [bytes, error] : rows) {
    const CannedServer server([&, reply = bytes](const Request& request) -> CannedServer::Reply {
      if (request.method != "PUT") return {reply, Then::drain};
      return {signedIn("ses_a"), Then::next};
    });
    connect(server);
    ASSERT_EQ(remote->signIn(email), nullptr);
    EXPECT_EQ(nameOf(remote->signOut()), error);
    EXPECT_EQ(remote->signOut(), nullptr);
  }
}

TEST_F(RemoteHostTest, EveryCreationCarriesAKeyOfItsOwnAndNothingElseDoes) {
  const CannedServer server([](const Request& request) -> CannedServer::Reply {
    const bool isUser = request.target == "/v1/users";
    return {CannedServer::http(isUser ? "{\"token\":null}" : "{\"instruments\":null}"), Then::next};
  });
  connect(server.url() + "/sandboxes/sbx_a", server.url() + "/sandboxes/sbx_a");
  EXPECT_EQ(nameOf(addInstrument("visa", "tok")), "none");
  EXPECT_EQ(nameOf(addInstrument("visa", "tok")), "none");
  EXPECT_FALSE(std::get<0>(list("tok")));
  remote->inAppClient()->registerWithAPIKey("k\r\nX-Other: y");
  list("tok");
  const auto requests = server.requests();
  ASSERT_EQ(requests.size(), 4U);
  EXPECT_EQ(requests[0].method + " " + requests[0].target,
            "POST /sandboxes/sbx_a/v1/users/tok/instruments?use_case=default");
  EXPECT_EQ(requests[0].apiKey, "key");
  EXPECT_EQ(length(requests[0].idempotencyKey), 32U);
  EXPECT_NE(requests[0].idempotencyKey, requests[1].idempotencyKey);
  EXPECT_EQ(requests[2].idempotencyKey, std::nullopt);
  EXPECT_EQ(requests[3].apiKey, std::nullopt);
}

// Replies overtake one another, and a minimal one says nothing about the cards.
TEST_F(RemoteHostTest, AGuestKnowsTheLatestOfEverythingThatCame) {
  RemoteGuest guest(email);
  sandbox::BackendGuest record{email, 2, "tok", {{sandbox::BackendCard()}}};
  guest.learn(record);
  guest.learn({email, 1, std::nullopt, {{}}});
  EXPECT_EQ(guest.paylevenToken(), "tok");
  guest.learn({email, 3, "new", std::nullopt});
  EXPECT_EQ(guest.paylevenToken(), "new");
  EXPECT_EQ(guest.creditCards()->size(), 1U);
  guest.forgetRevision();
  guest.learn({email, 1, std::nullopt, {{}}});
  EXPECT_EQ(guest.creditCards()->size(), 0U);
}

// What a service reads.
TEST(Records, ANewCardIsTakenAndWhatStoodThereIsGone) {
  const sandbox::Typed fields("visa");
  sandbox::Json request = {
      {"credit_card", sandbox::newCardJson(*sandbox::EnteredCard::make(fields))}, {"email", "a@b"}};
  const auto taken = sandbox::takeNewCard(request);
  EXPECT_TRUE(taken.pan == fields.pan && taken.cvv == fields.cvv);
  EXPECT_EQ(taken.cardHolder, fields.cardHolder);
  for (const auto& [key, text] : request["credit_card"].items()) EXPECT_TRUE(text == "") << key;
}

}  // namespace
}  // namespace hlv::client
