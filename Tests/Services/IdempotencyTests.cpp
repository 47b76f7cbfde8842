// Requests that are sent again.
#include "Tests/Services/ServicesTest.h"

namespace hlv::services {
namespace {

class IdempotencyKeys : public ServicesTest {
 protected:
  IdempotencyKeys() {
    serve();
    EXPECT_EQ(sandbox->signIn(email), "");
  }

  Heard createUser(const std::string& key, const std::string& name = "Erika",
                   const std::string& number = "4111111111111111") {
    const testing::Json body = {{"email", email},
                                {"use_case", "default"},
                                {"credit_card",
                                 {{"number", number},
                                  {"expiry_month", "12"},
                                  {"expiry_year", "2035"},
                                  {"security_code", "123"},
                                  {"card_holder", name}}}};
    return ask(services->providerURL(), "POST /v1/users", body.dump(),
               "X-API-Key: k\r\nIdempotency-Key: " + key + "\r\n");
  }

  Heard addCard(const std::string& key, const std::string& brand = "visa") {
    const testing::Json body = {{"credit_card",
                                 {{"last_four_digits", "1111"},
                                  {"brand", brand},
                                  {"use_case", "default"},
                                  {"external_identifier", "ins_x"},
                                  {"card_holder", "Erika"},
                                  {"expiry_month", "12"},
                                  {"expiry_year", "2035"}}},
                                {"provider", 0}};
    return ask(services->backendURL(), "POST " + guestPath() + "/cards", body.dump(),
               "Idempotency-Key: " + key + "\r\n");
  }
};

TEST_F(IdempotencyKeys, TheSameRequestHasOneEffectAndOneAnswerAlsoAfterARestart) {
  const auto user = createUser("a");
  const auto card = addCard("a");
  ASSERT_EQ(user.status, 201);
  ASSERT_EQ(card.status, 201);
  for (const bool restarts : {false, true}) {
    if (restarts) {
      endServices();
      serve();
    }
    EXPECT_EQ(createUser("a").text, user.text);
    EXPECT_EQ(addCard("a").text, card.text);
    EXPECT_EQ(addCard("a").status, 201);
    EXPECT_EQ(createUser("a", "Somebody else").code(), "idempotency-key-reused");
    EXPECT_EQ(addCard("a", "amex").status, 422);
    EXPECT_EQ(sandbox->providerInstruments().size(), 1U);
    EXPECT_EQ(sandbox->backendCards().size(), 1U);
  }
  EXPECT_NE(addCard("b").text, card.text);
  EXPECT_EQ(sandbox->backendCards().size(), 2U);
}

TEST_F(IdempotencyKeys, ARefusalIsKeptAndAFailureOfTheServiceIsNot) {
  EXPECT_EQ(createUser("declined", "Erika", "4000000000000002").code(), "card-declined");
  EXPECT_EQ(createUser("declined", "Erika", "4000000000000002").code(), "card-declined");
  EXPECT_EQ(createUser("declined").code(), "idempotency-key-reused");
  ASSERT_EQ(arm("createUserToken", "error"), "");
  EXPECT_EQ(createUser("failed").status, 500);
  EXPECT_EQ(createUser("failed").status, 201);
  sandbox->setReachable(false);
  EXPECT_EQ(addCard("offline").status, 503);
  sandbox->setReachable(true);
  EXPECT_EQ(addCard("offline").status, 201);
}

TEST_F(IdempotencyKeys, ARequestWhoseAnswerIsNotThereYetIsNotRepeated) {
  // Nobody pumps the main queue, which delayed answers need.
  ASSERT_EQ(arm("addCreditCardForGuest", "delay", [](auto& fault) { fault.delayMilliseconds = 1; }),
            "");
  reopenImpatiently();
  EXPECT_EQ(addCard("late").status, 0);
  EXPECT_EQ(addCard("late").code(), "idempotency-key-in-use");
  reopen();
  EXPECT_EQ(addCard("late").status, 201) << "others need not wait for what is stored";
  pumpUntilQuiet();
  EXPECT_EQ(addCard("late").status, 201);
  EXPECT_EQ(sandbox->backendCards().size(), 1U);

  ASSERT_EQ(arm("addCreditCardForGuest", "never"), "");
  reopenImpatiently();
  EXPECT_EQ(addCard("never").status, 0);
  pumpUntilQuiet();
  reopen();
  EXPECT_EQ(addCard("never").status, 201) << "what had no effect leaves the key free";
}

TEST_F(IdempotencyKeys, WhoseAnswerWasLostOnTheWayHearsItWhenAskingAgain) {
  for (const auto* kind : {"reset", "garbage", "refused"}) {
    ASSERT_EQ(arm("createUserToken", kind), "");
    const auto lost = createUser(kind).text;
    const auto heard = createUser(kind);
    EXPECT_EQ(heard.status, 201) << kind;
    EXPECT_EQ(createUser(kind).text, heard.text) << kind;
    EXPECT_LT(lost.size(), heard.text.size()) << kind;
  }
  EXPECT_EQ(sandbox->providerInstruments().size(), 3U);
}

TEST_F(IdempotencyKeys, AResetForgetsThem) {
  ASSERT_EQ(createUser("a").status, 201);
  sandbox->reset();
  ASSERT_EQ(sandbox->signIn(email), "");
  EXPECT_EQ(createUser("a").status, 201);
  EXPECT_EQ(sandbox->providerInstruments().size(), 1U);
}

TEST_F(IdempotencyKeys, AKeyIsShortAndPlain) {
  for (const auto& key : {std::string(201, 'k'), std::string("a b")}) {
    EXPECT_EQ(addCard(key).code(), "malformed-idempotency-key") << key;
  }
  EXPECT_TRUE(sandbox->backendCards().empty());
}

}  // namespace
}  // namespace hlv::services
