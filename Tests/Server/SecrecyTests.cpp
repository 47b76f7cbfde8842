// No card data in what the server leaves or replies.
#include "Tests/Secrecy/CardDataSearch.h"
#include "Tests/Server/ServerTest.h"

namespace hlv::sandbox::server {
namespace {

using Secrecy = ServerTest;

TEST_F(Secrecy, ACardGoesOverTheWireAndIsFoundNowhereAfterwards) {
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  auto card = sandbox::Typed("amex");
  card.cvv = "7391";
  // In a field of its own, where people type it by mistake.
  card.cardHolder = "A Guest " + card.pan;
  std::string replies;
  serveAndConnect();
  ASSERT_EQ(nameOf(std::get<2>(add(card))), "none");
  arm("addPaymentInstrument", "error");
  replies += std::get<2>(add(card))->developerMessage().value_or("");
  const auto body = newUser(card).dump();
  const auto spaced =
      card.pan.substr(0, 4) + "%20" + card.pan.substr(4, 6) + "%2d+" + card.pan.substr(10);
  for (const auto& sent : {body, body + "}", "[" + body + "]"}) {
    for (const auto& url : {server->backendURL(), server->providerURL()}) {
      for (const auto& request :
           {std::string("POST /v1/users"), "PATCH " + guestPath(), "POST " + guestPath() + "/cards",
            "PUT /v1/guests/" + card.pan, "GET /v1/users/tok/instruments?use_case=" + card.pan,
            "DELETE /" + card.pan + "?number=" + spaced, "GET /sandboxes/" + spaced + "/v1/sandbox",
            "PUT /v1/sandboxes/" + card.pan, card.pan + " /"}) {
        const auto reply =
            testing::ask(portOf(url), request, sent, "X-API-Key: key\r\n" + keyHeader(card.pan));
        replies += reply.head + reply.body;
      }
    }
  }
  require(200, askConsole("PUT /app/guest", {{"email", email}}));
  RawClient page(portOf(server->consoleURL()));
  page.send(requestOf("GET /events"));
  for (const auto* request : {"POST /app/cards", "POST /v1/sandbox/scenarios", "PUT /app/guest",
                              "PATCH /app/cards/crd_x"}) {
    replies += askConsole(request, enteredCard(card)).body;
  }
  for (const auto& path : {"/" + card.pan, std::string("/stored")}) {
    replies += askConsole("GET " + path).body;
  }
  require(200, askConsole("PUT /app/network", {{"on", false}}));
  replies += page.receiveUntil("network off");
  for (const auto* request : {"requests", "har", "firings", "sides"}) {
    replies += askProvider(std::string("GET /v1/sandbox/") + request).body;
  }
  EXPECT_GT(bodyOf(askProvider("GET /v1/sandbox/requests"))["requests"].size(), 50U);
  ASSERT_GT(replies.size(), 10'000U);
  const auto registry = storePath() + ".sandboxes/registry.sqlite";
  auto places = leftBy(*sandbox, storePath());
  places.emplace_back("registry", contentOf(registry) + contentOf(registry + "-wal"));
  places.emplace_back("replies", replies);
  places.emplace_back("stdout", ::testing::internal::GetCapturedStdout());
  places.emplace_back("stderr", ::testing::internal::GetCapturedStderr());
  for (auto& place : leftBy(*local, path("local"))) places.push_back(std::move(place));
  for (const auto& [name, text] : places) {
    EXPECT_EQ(hlv::testing::CardDataSearch(card.pan, card.cvv).in(text), std::nullopt) << name;
  }
}

}  // namespace
}  // namespace hlv::sandbox::server
