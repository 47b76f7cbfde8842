// What anybody may send.
#include <csignal>

#include "Sandbox/Masking/MaskedText.h"
#include "Tests/Server/ScopedLimit.h"
#include "Tests/Server/ServerTest.h"

namespace hlv::sandbox::server {
namespace {

const std::string PAN = "4111111111111111";

struct Row {
  std::string request;
  std::string body;
  int status;
  std::string code;
};

class HostileInput : public ServerTest {
 protected:
  HostileInput() {
    serveAndConnect();
    add("visa");
    ID_ = sandbox->backendCards().at(0).halvoID;
    token_ = guest->paylevenToken().value();
  }

  /// Everything that both services keep.
  std::string kept() const {
    auto all = askBackend("GET " + guestPath()).body;
    for (const auto& instrument : sandbox->providerInstruments()) {
      all += instrument.identifier.value_or("-") + instrument.useCase;
    }
    return all + sandbox->signedInEmail().value_or("-");
  }

  void refuses(const std::string& url, const std::vector<Row>& rows) {
    const auto before = kept();
    for (const auto& row : rows) {
      const auto reply = testing::ask(portOf(url), row.request, row.body, apiKey);
      const auto shown = sandbox::maskedText(row.request.substr(0, 60)) + " -> " + reply.code();
      EXPECT_EQ(reply.status, row.status) << shown;
      EXPECT_EQ(reply.code(), row.code) << shown;
      EXPECT_TRUE(reply.header("X-Request-Id").starts_with("req_")) << shown;
      EXPECT_EQ(reply.body.find(PAN), std::string::npos) << "a number came back";
    }
    EXPECT_EQ(kept(), before);
  }

  std::string ID_;
  std::string token_;
};

TEST_F(HostileInput, IsRefusedAndChangesNothing) {
  const auto with = [](Json body, const char* member, const Json& value) {
    body["credit_card"][member] = value;
    return body.dump();
  };
  const auto cards = "POST " + guestPath() + "/cards";
  const auto card = guestPath() + "/cards/" + ID_;
  const std::vector<Row> backend = {
      {cards, std::string(60'000, '['), 400, "malformed-json"},
      {cards, with(newCard(), "pan", 1), 422, "unknown-member"},
      {cards, with(newCard(), "brand", nullptr), 422, "wrong-type"},
      {cards, with(newCard(), "use_case", "theirs"), 400, "invalid-request"},
      {cards, with(newCard(), "card_holder", "no " + PAN), 422, "card-number-refused"},
      {cards, with(newCard(), "card_holder", std::string("a\0b", 3)), 422, "unreadable-text"},
      {"POST /v1/guests/other@example.com/cards", newCard().dump(), 404, "unknown-guest"},
      {"PATCH " + card, "{\"city\": \"" + PAN + "\"}", 422, "card-number-refused"},
      {"PATCH " + guestPath() + "/cards/none", "{}", 404, "unknown-card"},
      {"DELETE " + guestPath() + "/cards/" + PAN, "", 404, "unknown-card"},
      {"PUT /v1/guests/" + PAN + "@example.com", "", 400, "invalid-request"},
  };
  refuses(server->backendURL(), backend);

  const auto list = "/v1/users/" + token_ + "/instruments";
  const std::vector<Row> provider = {
      {"POST /v1/users", PAN + "x", 400, "malformed-json"},
      {"POST /v1/users", newUser("visa", PAN + "@example.com").dump(), 422, "card-number-refused"},
      {"POST /v1/users", with(newUser(), "number", "4000000000000002"), 422, "card-declined"},
      {"POST /v1/users", with(newUser(), "pin", "1"), 422, "unknown-member"},
      {"GET " + list + "?use_case=" + PAN, "", 422, "unknown-use-case"},
      {"GET /v1/users/" + PAN + "/instruments?use_case=default", "", 404, "unknown-token"},
      {"DELETE " + list + "/none?use_case=default", "", 404, "instrument-gone"},
  };
  refuses(server->providerURL(), provider);

  const std::string faults = "POST /v1/sandbox/faults";
  const auto created = require(201, askProvider("POST /v1/sandboxes", {{"id", "a"}}));
  const std::vector<Row> control = {
      {faults, R"({"operation": "createUserToken", "kind": "error", "times": 0})", 422,
       "fault-refused"},
      {"PATCH /v1/sandbox/faults/x", "{}", 404, "no-such-fault"},
      {"POST /v1/sandbox/scenarios", R"({"name": "x"})", 422, "scenario-refused"},
      {"POST /v1/sandbox/scenarios", R"({"name": "lost-token", "guest": "x@y"})", 404,
       "unknown-guest"},
      {"GET /v1/sandbox/requests/" + PAN, "", 404, "no-such-request"},
      {"POST /v1/sandboxes", R"({"id": "a"})", 409, "sandbox-exists"},
      {"PUT /v1/sandboxes/" + PAN, "", 422, "invalid-id"},
      {"POST /v1/sandboxes", R"({"snapshot": "../../store"})", 404, "no-such-snapshot"},
      {"POST /v1/sandboxes", R"({"ttl_seconds": 0})", 422, "invalid-time-to-live"},
      {"DELETE /v1/sandboxes/default", "", 409, "default-sandbox"},
      {"GET /sandboxes/" + PAN + "/v1/sandbox", "", 404, "no-such-sandbox"},
  };
  refuses(server->providerURL(), control);
  EXPECT_EQ(require(200, askProvider("GET /v1/sandboxes"))["sandboxes"].size(), 2U);
  EXPECT_EQ(require(200, askProvider("GET /v1/sandboxes/a"))["created"], created["created"]);
}

TEST_F(HostileInput, ADiskThatIsFullIsTheServersFaultAndLosesNothing) {
  require(201, askProvider("PUT /v1/sandboxes/a"));
  const auto before = kept();
  const std::pair<std::string, Json> rows[] = {
      {"POST /v1/users", newUser("visa", "new@example.com")},
      {"POST /v1/users/" + token_ + "/instruments?use_case=default", enteredCard()},
      {"POST /v1/sandbox/scenarios", {{"name", "lost-token"}, {"guest", email}}},
      {"POST /v1/sandbox/reset", Json::object()},
      {"POST /v1/sandbox/snapshots", Json::object()},
      {"POST /v1/sandboxes", {{"id", "b"}}},
      {"DELETE /v1/sandboxes/a", nullptr},
  };
  std::vector<Response> replies;
  {
    // Files grow no further, as on a disk that is full.
    std::signal(SIGXFSZ, SIG_IGN);
    const testing::ScopedLimit<RLIMIT_FSIZE> full(4096);
    for (const auto& [request, body] : rows) replies.push_back(askProvider(request, body));
    replies.push_back(askBackend("POST " + guestPath() + "/cards", newCard(), keyHeader("a")));
    replies.push_back(askBackend("PUT " + guestPath("new@example.com")));
    replies.push_back(askConsole("PUT /app/guest", {{"email", email}}));
    EXPECT_EQ(kept(), before);
  }
  for (std::size_t i = 0; i < replies.size(); ++i) {
    EXPECT_EQ(replies[i].status, 507) << (i < std::size(rows) ? rows[i].first : "") << " " << i;
    EXPECT_EQ(replies[i].code(), "store-failed") << i;
  }
  EXPECT_EQ(kept(), before);
  require(201, askBackend("POST " + guestPath() + "/cards", newCard(), keyHeader("a")));
  require(200, askProvider("GET /v1/sandboxes/a"));
  require(201, askProvider("PUT /v1/sandboxes/b"));
  serve();
  require(200, askProvider("GET /v1/sandboxes/a"));
  require(200, askProvider("GET /v1/sandboxes/b"));
}

}  // namespace
}  // namespace hlv::sandbox::server
