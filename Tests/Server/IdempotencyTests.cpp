// Requests that are sent again.
#include "Tests/Server/ServerTest.h"

namespace hlv::sandbox::server {
namespace {

class IdempotencyKeys : public ServerTest {
 protected:
  IdempotencyKeys() { serve(); }

  Response createUser(const std::string& key, const sandbox::Typed& card = "visa") {
    return askProvider("POST /v1/users", newUser(card), keyHeader(key));
  }
  Response addCard(const std::string& key, const std::string& identifier = "ins_x") {
    return askBackend("POST " + guestPath() + "/cards", newCard(identifier), keyHeader(key));
  }
};

TEST_F(IdempotencyKeys, TheSameRequestHasOneEffectAndOneReplyAlsoAfterARestart) {
  const auto user = createUser("a");
  const auto card = addCard("a");
  ASSERT_EQ(user.status, 201);
  ASSERT_EQ(card.status, 201);
  for (const bool restarts : {false, true}) {
    if (restarts) serve();
    EXPECT_EQ(createUser("a").body, user.body);
    EXPECT_EQ(addCard("a").body, card.body);
    EXPECT_EQ(addCard("a").status, 201);
    EXPECT_EQ(createUser("a", "amex").code(), "idempotency-key-reused");
    EXPECT_EQ(addCard("a", "ins_y").status, 422);
    EXPECT_EQ(sandbox->providerInstruments().size(), 1U);
    EXPECT_EQ(sandbox->backendCards().size(), 1U);
  }
  EXPECT_NE(addCard("b").body, card.body);
  EXPECT_EQ(sandbox->backendCards().size(), 2U);
  sandbox->reset();
  ASSERT_TRUE(sandbox->signIn(email));
  EXPECT_EQ(createUser("a", "amex").status, 201) << "a reset forgets them";
}

TEST_F(IdempotencyKeys, WhatIsSentTwiceAtTheSameTimeHappensOnce) {
  const auto request =
      requestOf("POST " + guestPath() + "/cards", newCard().dump(), keyHeader("at-once"));
  arm("addCreditCardForGuest", "delay", [](auto& fault) { fault.delayMilliseconds = 5; });
  std::vector<RawClient> clients;
  for (int i = 0; i < 8; ++i) clients.emplace_back(portOf(server->backendURL()));
  for (auto& client : clients) client.send(request);
  const auto first = clients.front().receive();
  EXPECT_EQ(first.status, 201);
  for (std::size_t i = 1; i < clients.size(); ++i) {
    const auto reply = clients[i].receive();
    EXPECT_EQ(reply.status, 201);
    EXPECT_EQ(reply.body, first.body);
  }
  EXPECT_EQ(sandbox->backendCards().size(), 1U);
}

TEST_F(IdempotencyKeys, ARefusalIsKeptAndAFailureOfTheServiceIsNot) {
  EXPECT_EQ(createUser("declined", "declined").code(), "card-declined");
  EXPECT_EQ(createUser("declined", "declined").code(), "card-declined");
  EXPECT_EQ(createUser("declined").code(), "idempotency-key-reused");
  arm("createUserToken", "error");
  EXPECT_EQ(createUser("failed").status, 500);
  EXPECT_EQ(createUser("failed").status, 201);
  arm("createUserToken", "error", [](auto& fault) {
    fault.status = 429;
    fault.headers = {{"Retry-After", "3"}};
  });
  const auto busy = createUser("busy");
  EXPECT_EQ(busy.status, 429);
  EXPECT_EQ(busy.header("Retry-After"), "3");
  EXPECT_EQ(createUser("busy", "amex").status, 201);
  sandbox->setReachable(false);
  EXPECT_EQ(addCard("offline").status, 503);
  sandbox->setReachable(true);
  EXPECT_EQ(addCard("offline").status, 201);
  for (const auto& key : {std::string(201, 'k'), std::string("a b"), std::string()}) {
    EXPECT_EQ(addCard(key).code(), "malformed-idempotency-key") << key;
  }
  EXPECT_EQ(sandbox->backendCards().size(), 1U);
}

}  // namespace
}  // namespace hlv::sandbox::server
