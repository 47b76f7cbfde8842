// The console over HTTP: the app that it drives, the story that it tells, and its page.
#include <thread>

#include "Platform/Default/DefaultPlatform.h"
#include "Public/HLVSDKPayleven.h"
#include "Services/Console/Console.h"
#include "Services/Console/Page.h"
#include "Tests/Secrecy/CardDataSearch.h"
#include "Tests/Services/ServicesTest.h"
#include "Tests/Services/Talk.h"

namespace hlv::services {
namespace {

using testing::Json;
using testing::Listening;

class ConsoleTest : public ServicesTest {
 protected:
  ConsoleTest() {
    serve();
    open();
  }
  ~ConsoleTest() override { HLVSDKPayleven::resetSharedInstance(); }

  void open(ServiceLimits limits = {}) {
    console.reset();
    services::Listening listening;
    listening.limits = limits;
    auto opened = Console::open(sandbox, listening, 0);
    ASSERT_TRUE(opened.console) << opened.problem;
    console = std::move(opened.console);
  }

  /// Asks while this thread pumps the main queue, as the command does.
  Heard call(const std::string& request, const Json& body = {}) {
    const auto platform = DefaultPlatform::shared();
    Heard heard;
    bool isHeard = false;
    std::thread asking([&] {
      heard = ask(console->url(), request, body.is_null() ? "" : body.dump());
      platform->mainQueue()->async([&] { isHeard = true; });
    });
    platform->runUntil([&] {
      console->look();
      return isHeard;
    });
    asking.join();
    return heard;
  }
  Json truth() { return call("GET /truth").body(); }
  Heard addTestCard(const std::string& name) {
    return call("POST /app/cards", {{"test_card", name}});
  }
  void signIn() { ASSERT_EQ(call("PUT /app/guest", {{"email", email}}).status, 200); }
  /// What the last operation told, one event a line.
  std::string lastStory() {
    std::string lines;
    const auto story = sandbox->journal().last(1);
    for (const auto& event : story.at(0).events) {
      lines += event.from + " > " + event.to + ": " + event.what + ": " + event.result + "\n";
    }
    return lines;
  }

  std::unique_ptr<Console> console;
};

TEST_F(ConsoleTest, DrivesARealKitFromTheFirstCardToTheLast) {
  signIn();
  const auto first = addTestCard("visa").body();
  EXPECT_EQ(first["answers"], 1);
  EXPECT_EQ(first["credit_card"]["last_four_digits"], "1111");
  EXPECT_NE(lastStory().find("app > kit: addPaymentInstrument: \n"
                             "kit > provider: createUserToken use case default: \n"),
            std::string::npos)
      << lastStory();
  const auto second = call("POST /app/cards", {{"test_card", "amex"},
                                               {"use_case", "business"},
                                               {"billing_address", {{"city", "Hamburg"}}}})
                          .body();
  const auto path = "/app/cards/" + second["credit_card"]["id"].get<std::string>();
  EXPECT_EQ(call("PATCH " + path, {{"street", "Harbour Road 1"}}).body()["answers"], 1);
  auto pairs = truth()["pairs"];
  ASSERT_EQ(pairs.size(), 2U);
  EXPECT_EQ(pairs[1]["card"]["billing_address"]["street"], "Harbour Road 1");
  EXPECT_EQ(pairs[1]["card"]["billing_address"]["city"], "Hamburg");
  EXPECT_EQ(pairs[1]["card"]["external_identifier"], pairs[1]["instrument"]["identifier"]);
  EXPECT_EQ(call("DELETE " + path).body()["failure"], nullptr);
  EXPECT_EQ(truth()["pairs"].size(), 1U);

  ASSERT_EQ(call("POST /scenes", {{"name", "instrument-without-card"}}).status, 200);
  pairs = truth()["pairs"];
  ASSERT_EQ(pairs.size(), 2U);
  EXPECT_EQ(pairs[1]["card"], nullptr);
  EXPECT_EQ(call("POST /app/foreground", Json::object()).status, 200);
  EXPECT_EQ(truth()["pairs"].size(), 1U) << lastStory();

  EXPECT_EQ(call("PUT /app/network", {{"on", false}}).status, 200);
  EXPECT_NE(addTestCard("visa").body()["failure"], nullptr);
  EXPECT_EQ(call("POST /reset", Json::object()).status, 200);
  const auto after = truth();
  EXPECT_EQ(after["guest"], nullptr);
  EXPECT_EQ(after["network"], true);
  EXPECT_EQ(after["pairs"].size(), 0U);
}

TEST_F(ConsoleTest, TheAppStartsAgainForAnotherGuestWhomTheKitThenSynchronises) {
  for (const auto* other : {"one@example.com", "two@example.com"}) {
    ASSERT_EQ(call("PUT /app/guest", {{"email", other}}).status, 200);
    ASSERT_EQ(addTestCard("visa").body()["failure"], nullptr);
    ASSERT_EQ(call("POST /scenes", {{"name", "instrument-without-card"}}).status, 200);
    ASSERT_EQ(call("POST /app/foreground", Json::object()).status, 200);
    EXPECT_EQ(truth()["pairs"].size(), 1U) << other;
  }
}

TEST_F(ConsoleTest, FaultsAreArmedAndWhatTheyDoIsTold) {
  signIn();
  const auto armed =
      call("POST /faults",
           {{"operation", "createUserToken"}, {"kind", "error"}, {"code", 7}, {"times", nullptr}})
          .body()["faults"];
  ASSERT_EQ(armed.size(), 1U);
  EXPECT_EQ(armed[0]["times"], nullptr);
  EXPECT_NE(addTestCard("visa").body()["failure"], nullptr);
  EXPECT_NE(lastStory().find("fault 'error' met createUserToken"), std::string::npos);
  EXPECT_NE(lastStory().find("error PLVErrorDomain 7"), std::string::npos) << lastStory();
  EXPECT_EQ(call("DELETE /faults").body()["faults"].size(), 0U);
  ASSERT_EQ(call("POST /faults", {{"operation", "createUserToken"}, {"kind", "never"}}).status,
            200);
  const auto unanswered = addTestCard("visa").body();
  EXPECT_EQ(unanswered["answers"], 0);
  EXPECT_EQ(unanswered["failure"], nullptr);
}

TEST_F(ConsoleTest, BadInputGetsAClearErrorAndChangesNothing) {
  const auto card = [](const Json& fields) {
    Json body = {{"credit_card",
                  {{"number", "4111" + std::string("111111111111")},
                   {"expiry_month", "12"},
                   {"expiry_year", "2035"},
                   {"security_code", "123"},
                   {"card_holder", "Erika"}}}};
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
      {"POST /faults", {{"operation", "fly"}, {"kind", "error"}}, 422, "fault-refused"},
      {"POST /faults",
       {{"operation", "createUserToken"}, {"kind", "error"}, {"times", 0}},
       422,
       "fault-refused"},
      {"POST /faults", {{"operation", "createUserToken"}, {"times", 1.5}}, 422, "wrong-type"},
      {"POST /scenes", {{"name", "half-deleted"}}, 422, "scene-refused"},
      {"GET /story?last=many", nullptr, 422, "wrong-type"},
      {"GET /nothing", nullptr, 404, "no-such-resource"},
      {"DELETE /reset", nullptr, 405, "method-not-allowed"},
  };
  for (const auto& [request, body, status, code] : rows) {
    const auto heard = call(request, body);
    EXPECT_EQ(heard.status, status) << request;
    EXPECT_EQ(heard.code(), code) << request;
  }
  EXPECT_EQ(
      testing::say(console->url(), "GET /truth HTTP/1.1\r\nHost: evil.example:80\r\n\r\n").status,
      403)
      << "a page from elsewhere, which has its own name point here";
  EXPECT_EQ(truth()["guest"], nullptr);
  EXPECT_EQ(truth()["faults"].size(), 0U);
}

TEST_F(ConsoleTest, TheStoryIsHeardWhileItHappensAndTheWholeOfItAtFirst) {
  signIn();
  Listening page(console->url(), "GET /events HTTP/1.1\r\nHost: localhost\r\n\r\n");
  EXPECT_NE(page.until("\"name\":\"sign in\"").find("event: story\ndata: {\"whole\":true"),
            std::string::npos);
  page.until("event: truth\ndata: ");
  ASSERT_EQ(addTestCard("visa").status, 200);
  const auto news = page.until("\"what\":\"addPaymentInstrument\",\"result\":\"guest, card");
  EXPECT_NE(news.find("{\"whole\":false"), std::string::npos);
  // The truth may be out before the kit has told the app.
  const std::string card = "\"last_four_digits\":\"1111\"";
  if (news.find(card) == std::string::npos) page.until(card);

  std::vector<std::unique_ptr<Listening>> more;
  for (int i = 0; i < 7; ++i) {
    more.push_back(std::make_unique<Listening>(console->url(),
                                               "GET /events HTTP/1.1\r\nHost: localhost\r\n\r\n"));
    more.back()->until("event: story");
  }
  EXPECT_EQ(call("GET /events").code(), "too-many-pages");
  console.reset();
  page.untilItEnds();
}

TEST_F(ConsoleTest, ItIsFoundAgainWhereItWas) {
  const auto url = console->url();
  const auto backendURL = services->backendURL();
  console.reset();
  services.reset();
  reopen();
  open();
  EXPECT_EQ(console->url(), url);
  EXPECT_EQ(services->backendURL(), backendURL);
}

TEST_F(ConsoleTest, ACardThatIsTypedHereIsFoundNowhereAfterwards) {
  auto card = sandbox::Typed("amex");
  card.cvv = "7391";
  signIn();
  Listening page(console->url(), "GET /events HTTP/1.1\r\nHost: localhost\r\n\r\n");
  std::string answers;
  for (const auto& holder : {std::string("Erika"), "Erika " + card.pan}) {
    const Json body = {{"credit_card",
                        {{"number", card.pan},
                         {"expiry_month", card.expiryMonth},
                         {"expiry_year", card.expiryYear},
                         {"security_code", card.cvv},
                         {"card_holder", holder}}}};
    for (const auto* request : {"POST /app/cards", "POST /faults", "POST /scenes", "PUT /app/guest",
                                "PATCH /app/cards/crd_x"}) {
      answers += call(request, body).text;
    }
  }
  answers += call("PUT /app/guest", {{"email", card.pan + "@example.com"}}).text;
  answers += call("POST /scenes", {{"name", card.pan}}).text;
  answers += call("GET /" + card.pan).text + call("GET /choices").text + truth().dump();
  answers += call("GET /story?last=200").text;
  ASSERT_EQ(call("PUT /app/network", {{"on", false}}).status, 200);
  answers += page.until("network off");
  for (const auto& [name, text] :
       {std::pair("answers", answers), std::pair("log", contentOf(storePath() + ".log")),
        std::pair("store", contentOf(storePath())),
        std::pair("WAL", contentOf(storePath() + "-wal"))}) {
    EXPECT_EQ(hlv::testing::CardDataSearch(card.pan, card.cvv).in(text), std::nullopt) << name;
  }
}

TEST_F(ConsoleTest, ThePageNeedsNothingFromElsewhere) {
  const auto page = call("GET /");
  EXPECT_NE(page.head.find("Content-Security-Policy: default-src 'self'"), std::string::npos);
  for (const char* name : {"console.css", "main.js", "story.js", "diagram.js", "export.js"}) {
    const auto* file = findPageFile(name);
    ASSERT_NE(file, nullptr) << name;
    EXPECT_EQ(call("GET /" + std::string(name)).text, file->content);
    EXPECT_EQ(file->content.find("https://"), std::string_view::npos) << name;
    EXPECT_EQ(file->content.find("innerHTML"), std::string_view::npos) << name;
  }
}

}  // namespace
}  // namespace hlv::services
