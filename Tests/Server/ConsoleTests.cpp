// The console over HTTP: the app that it drives, and what it refuses.
#include "Tests/Server/ServerTest.h"

namespace hlv::sandbox::server {
namespace {

class ConsoleTest : public ServerTest {
 protected:
  ConsoleTest() {
    serve();
    sandbox->signOut();
  }

  Json stored(const std::string& in = "") { return bodyOf(askConsole("GET " + in + "/stored")); }
  Response addTestCard(const std::string& name, const std::string& in = "") {
    return askConsole("POST " + in + "/app/cards", {{"test_card", name}});
  }
};

TEST_F(ConsoleTest, TheKitFollowsTheGuestAndTheSandbox) {
  require(201, askProvider("PUT /v1/sandboxes/a"));
  for (const std::string in : {"", "/sandboxes/a", "/sandboxes/default"}) {
    for (const auto* other : {"one@example.com", "two@example.com"}) {
      require(200, askConsole("PUT " + in + "/app/guest", {{"email", other}}));
      ASSERT_EQ(bodyOf(addTestCard("visa", in))["failure"], nullptr);
      const auto pairs = stored(in)["pairs"].size();
      require(200, askConsole("POST " + in + "/v1/sandbox/scenarios",
                              {{"name", "instrument-without-card"}, {"guest", other}}));
      require(200, askConsole("POST " + in + "/app/foreground", Json::object()));
      EXPECT_EQ(stored(in)["pairs"].size(), pairs) << "the kit synchronises " << in << other;
    }
  }
  EXPECT_EQ(stored("/sandboxes/a")["guest"]["email"], "two@example.com");
  EXPECT_EQ(stored("/sandboxes/a")["pairs"].size(), 1U);
  require(204, askProvider("DELETE /v1/sandboxes/a"));
  EXPECT_EQ(addTestCard("visa", "/sandboxes/a").code(), "no-such-sandbox");
  EXPECT_EQ(addTestCard("visa").status, 200);
}

TEST_F(ConsoleTest, OperationsOfTwoSandboxesAtOnceAllGetAReply) {
  serve([](ServerOptions& options) {
    options.listening.limits.answerTime = std::chrono::seconds(5);
  });
  require(201, askProvider("PUT /v1/sandboxes/a"));
  RawClient here(portOf(server->consoleURL())), there(portOf(server->consoleURL()));
  here.send(requestOf("PUT /app/network", R"({"on": true})"));
  there.send(requestOf("PUT /sandboxes/a/app/network", R"({"on": true})"));
  require(200, askProvider("GET /v1/sandboxes/a"));
  // Both wait for this thread by now, and nothing else comes.
  whilePumping([&] {
    EXPECT_EQ(here.receive().status, 200);
    EXPECT_EQ(there.receive().status, 200);
  });
}

TEST_F(ConsoleTest, BadInputGetsAClearErrorAndChangesNothing) {
  auto pinned = enteredCard();
  pinned["credit_card"]["pin"] = "1";
  const std::tuple<std::string, Json, int, std::string> rows[] = {
      {"PUT /app/guest", {{"email", "nobody"}}, 422, "address-refused"},
      {"PUT /app/network", {{"on", "yes"}}, 422, "wrong-type"},
      {"POST /app/cards", {{"test_card", "gold"}}, 422, "no-such-test-card"},
      {"POST /app/cards", pinned, 422, "unknown-member"},
      {"POST /app/cards", {{"test_card", "visa"}}, 409, "not-signed-in"},
  };
  for (const auto& [request, body, status, code] : rows) {
    const auto reply = askConsole(request, body);
    EXPECT_EQ(reply.status, status) << request;
    EXPECT_EQ(reply.code(), code) << request;
  }
  EXPECT_EQ(stored()["guest"], nullptr);
  const auto page = askConsole("GET /?what=ever");
  EXPECT_TRUE(page.header("Content-Security-Policy").starts_with("default-src 'self'"));
}

}  // namespace
}  // namespace hlv::sandbox::server
