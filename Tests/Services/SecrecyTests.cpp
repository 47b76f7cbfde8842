// No card data in what the services leave, tell or answer.
#include "Tests/Secrecy/CardDataSearch.h"
#include "Tests/Services/ServicesTest.h"

namespace hlv::services {
namespace {

using Secrecy = ServicesTest;

TEST_F(Secrecy, ACardGoesOverTheWireAndIsFoundNowhereAfterwards) {
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  auto card = sandbox::Typed("amex");
  card.cvv = "7391";
  // In a field of its own, where people type it by mistake.
  card.cardHolder = "A Guest " + card.pan;
  std::string answers;
  serveAndConnect();
  ASSERT_EQ(nameOf(std::get<2>(add(card))), "none");
  ASSERT_EQ(arm("addPaymentInstrument", "error"), "");
  answers += std::get<2>(add(card))->developerMessage().value_or("");
  const testing::Json body = {{"email", email},
                              {"use_case", "default"},
                              {"credit_card",
                               {{"number", card.pan},
                                {"expiry_month", card.expiryMonth},
                                {"expiry_year", card.expiryYear},
                                {"security_code", card.cvv},
                                {"card_holder", card.cardHolder}}}};
  for (const auto& sent : {body.dump(), body.dump() + "}", "[" + body.dump() + "]"}) {
    for (const auto& url : {services->backendURL(), services->providerURL()}) {
      const std::string headers = "X-API-Key: key\r\nIdempotency-Key: a\r\n";
      for (const auto& request : {std::string("POST /v1/users"), "PATCH " + guestPath(),
                                  "POST " + guestPath() + "/cards", "PUT /v1/guests/" + card.pan}) {
        const auto heard = ask(url, request, sent, headers);
        answers += heard.head + heard.text;
      }
    }
  }
  ASSERT_GT(answers.size(), 1000U);
  std::string journal;
  for (const auto& side : {sandbox, local}) {
    for (const auto& operation : side->journal().last(1000)) {
      for (const auto& event : operation.events) journal += event.what + " " + event.result + "\n";
    }
  }
  const std::pair<std::string, std::string> places[] = {
      {"answers", answers},
      {"journal", journal},
      {"log", contentOf(storePath() + ".log") + contentOf(path("local") + ".log")},
      {"store", contentOf(storePath()) + contentOf(path("local"))},
      {"WAL", contentOf(storePath() + "-wal") + contentOf(path("local") + "-wal")},
      {"stdout", ::testing::internal::GetCapturedStdout()},
      {"stderr", ::testing::internal::GetCapturedStderr()},
  };
  for (const auto& [name, text] : places) {
    EXPECT_EQ(hlv::testing::CardDataSearch(card.pan, card.cvv).in(text), std::nullopt) << name;
  }
}

}  // namespace
}  // namespace hlv::services
