// The console over HTTP: the app that it drives, the timeline that it shows, and its page.
#include "Sandbox/Calls/Journal.h"
#include "Server/Console/Page.h"
#include "Tests/Server/ServerTest.h"

namespace hlv::server {
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
  void signIn() { require(200, askConsole("PUT /app/guest", {{"email", email}})); }
  /// What the last operation recorded, one event a line.
  std::string lastTimeline() {
    std::string lines;
    const auto timeline = sandbox->journal().last(1);
    for (const auto& event : timeline.at(0).events) {
      lines += event.from + " > " + event.to + ": " + event.what + ": " + event.result + "\n";
    }
    return lines;
  }
  /// A page that follows the feed.
  RawClient follow() const {
    RawClient page(portOf(server->consoleURL()));
    page.send(requestOf("GET /events"));
    return page;
  }
};

TEST_F(ConsoleTest, DrivesARealKitFromTheFirstCardToTheLast) {
  signIn();
  const auto first = bodyOf(addTestCard("visa"));
  EXPECT_EQ(first["answers"], 1);
  EXPECT_EQ(first["credit_card"]["last_four_digits"], "1111");
  EXPECT_NE(lastTimeline().find("app > kit: addPaymentInstrument: \n"
                                "kit > provider: createUserToken use case default: \n"),
            std::string::npos)
      << lastTimeline();
  const auto second =
      require(200, askConsole("POST /app/cards", {{"test_card", "amex"},
                                                  {"use_case", "business"},
                                                  {"billing_address", {{"city", "Hamburg"}}}}));
  const auto path = "/app/cards/" + second["credit_card"]["id"].get<std::string>();
  const auto updated = require(200, askConsole("PATCH " + path, {{"street", "Harbour Road 1"}}));
  EXPECT_EQ(updated["answers"], 1);
  auto pairs = stored()["pairs"];
  ASSERT_EQ(pairs.size(), 2U);
  EXPECT_EQ(pairs[1]["card"]["billing_address"]["street"], "Harbour Road 1");
  EXPECT_EQ(pairs[1]["card"]["billing_address"]["city"], "Hamburg");
  EXPECT_EQ(pairs[1]["card"]["external_identifier"], pairs[1]["instrument"]["identifier"]);
  EXPECT_EQ(require(200, askConsole("DELETE " + path))["failure"], nullptr);
  EXPECT_EQ(stored()["pairs"].size(), 1U);

  ASSERT_EQ(askConsole("POST /v1/sandbox/scenarios",
                       {{"name", "instrument-without-card"}, {"guest", email}})
                .status,
            200);
  pairs = stored()["pairs"];
  ASSERT_EQ(pairs.size(), 2U);
  EXPECT_EQ(pairs[1]["card"], nullptr);
  EXPECT_EQ(askConsole("POST /app/foreground", Json::object()).status, 200);
  EXPECT_EQ(stored()["pairs"].size(), 1U) << lastTimeline();

  EXPECT_EQ(askConsole("PUT /app/network", {{"on", false}}).status, 200);
  EXPECT_NE(bodyOf(addTestCard("visa"))["failure"], nullptr);
  EXPECT_EQ(askConsole("POST /reset", Json::object()).status, 200);
  const auto after = stored();
  EXPECT_EQ(after["guest"], nullptr);
  EXPECT_EQ(after["network"], true);
  EXPECT_EQ(after["pairs"].size(), 0U);
}

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

TEST_F(ConsoleTest, BadInputGetsAClearErrorAndChangesNothing) {
  const auto card = [](const Json& fields) {
    auto body = enteredCard();
    body["credit_card"].update(fields);
    return body;
  };
  const std::tuple<std::string, Json, int, std::string> rows[] = {
      {"PUT /app/guest", {{"email", "nobody"}}, 422, "address-refused"},
      {"PUT /app/guest", {{"email", 5}}, 422, "wrong-type"},
      {"PUT /app/network", {{"on", "yes"}}, 422, "wrong-type"},
      {"POST /app/cards", {{"test_card", "gold"}}, 422, "no-such-test-card"},
      {"POST /app/cards", card({{"expiry_month", 12}}), 422, "wrong-type"},
      {"POST /app/cards", card({{"pin", "1"}}), 422, "unknown-member"},
      {"POST /app/cards", Json::object(), 422, "wrong-type"},
      {"POST /app/cards", {{"test_card", "visa"}}, 409, "not-signed-in"},
      {"DELETE /app/cards/crd_x", nullptr, 409, "not-signed-in"},
      {"GET /timeline?last=many", nullptr, 422, "wrong-type"},
      {"GET /nothing", nullptr, 404, "no-such-resource"},
      {"DELETE /reset", nullptr, 405, "method-not-allowed"},
  };
  for (const auto& [request, body, status, code] : rows) {
    const auto reply = askConsole(request, body);
    EXPECT_EQ(reply.status, status) << request;
    EXPECT_EQ(reply.code(), code) << request;
  }
  EXPECT_EQ(stored()["guest"], nullptr);
  EXPECT_EQ(stored()["faults"].size(), 0U);
}

TEST_F(ConsoleTest, TheTimelineComesWhileItHappensAndTheWholeOfItAtFirst) {
  signIn();
  std::vector<RawClient> pages;
  for (int i = 0; i < 8; ++i) pages.push_back(follow());
  for (auto& page : pages) {
    EXPECT_NE(
        page.receiveUntil("\"name\":\"sign in\"").find("event: timeline\ndata: {\"whole\":true"),
        std::string::npos);
    page.receiveUntil("event: stored\ndata: ");
    page.receiveUntil("/app/guest");
  }
  ASSERT_EQ(addTestCard("visa").status, 200);
  for (auto& page : pages) {
    const auto news =
        page.receiveUntil("\"what\":\"addPaymentInstrument\",\"result\":\"guest, card");
    EXPECT_NE(news.find("{\"whole\":false"), std::string::npos);
    // The stored data may be out before the kit has replied to the app.
    const std::string card = "\"last_four_digits\":\"1111\"";
    if (news.find(card) == std::string::npos) page.receiveUntil(card);
  }
  server.reset();
  for (auto& page : pages) page.receiveRest();
}

TEST_F(ConsoleTest, ThePageNeedsNothingFromElsewhere) {
  const auto page = askConsole("GET /");
  EXPECT_TRUE(page.header("Content-Security-Policy").starts_with("default-src 'self'"));
  for (const char* name : {"console.css", "main.js", "timeline.js", "diagram.js", "export.js"}) {
    const auto* file = findPageFile(name);
    ASSERT_NE(file, nullptr) << name;
    EXPECT_EQ(askConsole("GET /" + std::string(name)).body, file->content);
    EXPECT_EQ(file->content.find("https://"), std::string_view::npos) << name;
    EXPECT_EQ(file->content.find("innerHTML"), std::string_view::npos) << name;
  }
}

}  // namespace
}  // namespace hlv::server
