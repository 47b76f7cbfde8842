// Sandboxes of a server elsewhere, and what a tester does to one of them.
#include <algorithm>

#include "Client/Sandboxes.h"
#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/JSON/FaultRecords.h"
#include "Sandbox/JSON/SandboxRecords.h"
#include "Tests/Client/ClientTest.h"

namespace hlv::client {
namespace {

using Request = CannedServer::Request;
using sandbox::Json;

Json description(const std::string& id, const std::string& url = "http://127.0.0.1:1") {
  SandboxDescription sandbox;
  sandbox.id = id;
  sandbox.seed = 18'446'744'073'709'551'615U;
  sandbox.clock = "2030-01-01T00:00:00Z";
  sandbox.backendURL = sandbox.providerURL = url + "/sandboxes/" + id;
  return jsonOf(sandbox);
}

CannedServer::Reply replyWith(const Json& body) {
  return {CannedServer::http(body.dump()), Then::keep};
}

TEST(Sandboxes, AreCreatedListedAndControlledByTheirIds) {
  const CannedServer server([](const Request& request) -> CannedServer::Reply {
    const auto line = request.line();
    const auto has = [&line](const char* text) { return line.find(text) != std::string::npos; };
    if (has("/clock")) return replyWith({{"now", "2031-01-01T00:00:00Z"}});
    if (has("/snapshots")) {
      const Json snapshot = {{"snapshot", "snp_a"}, {"created", "2030"}, {"sandbox", "a"}};
      return has("GET") ? replyWith({{"snapshots", {snapshot}}}) : replyWith(snapshot);
    }
    if (has("after=a")) return replyWith({{"sandboxes", {description("b")}}, {"next", nullptr}});
    if (has("?limit")) return replyWith({{"sandboxes", {description("a")}}, {"next", "a"}});
    if (has("DELETE")) return {"HTTP/1.1 204 No Content\r\n\r\n", Then::keep};
    return replyWith(description("a"));
  });
  const SandboxClient client(server.url() + "/proxy/sandboxes/own");
  EXPECT_EQ(client.id(), "own");
  NewSandbox options;
  options.id = "a";
  options.seed = 7;
  options.secondsToLive = 60;
  options.isInMemory = true;
  const auto created = client.create(options);
  EXPECT_EQ(created.seed, 18'446'744'073'709'551'615U);
  EXPECT_EQ(created.providerURL, "http://127.0.0.1:1/sandboxes/a");
  EXPECT_EQ(client.list().size(), 2U);
  EXPECT_EQ(client.describe("a/b").id, "a");
  client.reset("a");
  EXPECT_EQ(client.snapshot("a").id, "snp_a");
  EXPECT_EQ(client.snapshots().size(), 1U);
  client.restore("a", "snp_a");
  EXPECT_EQ(client.advanceClock("a", 86'400), "2031-01-01T00:00:00Z");
  EXPECT_EQ(client.clock("default"), "2031-01-01T00:00:00Z");
  client.removeSnapshot("snp_a");
  client.remove("a");
  EXPECT_EQ(
      server.lines(),
      (std::vector<std::string>{
          "POST /proxy/v1/sandboxes", "GET /proxy/v1/sandboxes?limit=1000",
          "GET /proxy/v1/sandboxes?limit=1000&after=a", "GET /proxy/v1/sandboxes/a%2Fb",
          "POST /proxy/sandboxes/a/v1/sandbox/reset",
          "POST /proxy/sandboxes/a/v1/sandbox/snapshots", "GET /proxy/v1/snapshots",
          "POST /proxy/sandboxes/a/v1/sandbox/restore", "PUT /proxy/sandboxes/a/v1/sandbox/clock",
          "GET /proxy/sandboxes/default/v1/sandbox/clock", "DELETE /proxy/v1/snapshots/snp_a",
          "DELETE /proxy/v1/sandboxes/a"}));
  EXPECT_EQ(server.requests()[0].body(),
            R"({"id":"a","seed":7,"ttl_seconds":60,"in_memory":true})");
  EXPECT_EQ(server.requests()[8].body(), R"({"advance_seconds":86400})");
}

TEST(Sandboxes, AProblemIsOneSentence) {
  const auto sentenceOf = [](const std::string& reply) {
    const CannedServer server({reply, Then::close});
    try {
      (void)SandboxClient(server.url()).describe("a");
      return std::string();
    } catch (const ClientError& error) {
      return std::string(error.what());
    }
  };
  EXPECT_EQ(sentenceOf(CannedServer::http(
                R"({"error":{"code":"no-such-sandbox","domain":"D","number":404,)"
                R"("message":"There is no sandbox of this name."}})",
                "404 Not Found")),
            "There is no sandbox of this name.");
  EXPECT_EQ(sentenceOf(CannedServer::http("{}")), "The service's reply cannot be read.");
  EXPECT_EQ(sentenceOf(""), "The connection ended before the service had answered.");
  EXPECT_THROW(SandboxClient("https://127.0.0.1"), ClientError);
}

TEST(Sandboxes, ATestHasOneOfItsOwnInOneLine) {
  std::string url;
  const CannedServer server([&url](const Request& request) -> CannedServer::Reply {
    if (request.line().starts_with("POST ")) return replyWith(description("sbx_a", url));
    if (request.line().starts_with("DELETE ")) return {"HTTP/1.1 204 N\r\n\r\n", Then::keep};
    return replyWith({{"email", "a@b"},
                      {"revision", 1},
                      {"payment_token", nullptr},
                      {"credit_cards", Json::array()},
                      {"session", "ses_a"}});
  });
  url = server.url();
  {
    const auto sandbox = TestSandbox::create(url);
    sandbox.signIn("a@b");
    EXPECT_EQ(sandbox.host()->currentGuest()->email(), "a@b");
  }
  EXPECT_EQ(server.lines(),
            (std::vector<std::string>{"POST /v1/sandboxes", "PUT /sandboxes/sbx_a/v1/guests/a%40b",
                                      "DELETE /v1/sandboxes/sbx_a"}));
  EXPECT_EQ(server.requests()[0].body(), R"({"ttl_seconds":3600,"in_memory":true})");
}

using RemoteTesterTest = ClientTest;

TEST_F(RemoteTesterTest, NamesTheGuestAndOneFaultByItsNumber) {
  sandbox::Fault fault;
  fault.operation = sandbox::Operation::listInstruments;
  fault.kind = sandbox::FaultKind::slow;
  fault.remaining = std::nullopt;
  fault.distribution = sandbox::Distribution::logNormal;
  fault.headers = {{"Retry-After", "3"}};
  fault.status = 429;
  fault.bytesPerSecond = 10;
  fault.number = 5;
  const CannedServer server([&](const Request& request) -> CannedServer::Reply {
    const auto line = request.line();
    if (line.find("/faults/5") != std::string::npos) return replyWith(jsonOf(fault));
    if (line.find("/faults") != std::string::npos) {
      return replyWith({{"faults", {jsonOf(fault)}}, {"fault", jsonOf(fault)}});
    }
    if (line.find("/network") != std::string::npos) return replyWith({{"on", false}});
    return replyWith(description("default"));
  });
  connect(server.url(), server.url() + "/sandboxes/sbx_a");
  const auto tester = remote->tester();
  EXPECT_EQ(tester->arm(fault).value(), 5);
  EXPECT_EQ(tester->armed(), std::vector{fault});
  EXPECT_EQ(tester->fault(5), fault);
  EXPECT_EQ(tester->changeFault(5, fault), fault);
  tester->removeFault(5);
  EXPECT_TRUE(tester->makeScenario(sandbox::Scenario::halfDeleted));
  EXPECT_TRUE(tester->addOrphanInstrument(sandbox::findTestCard("visa")->fields));
  EXPECT_EQ(tester->reset().id, "default");
  EXPECT_FALSE(tester->isNetworkOn());
  const auto requests = server.requests();
  ASSERT_EQ(requests.size(), 9U);
  EXPECT_EQ(sandbox::faultIn([&] {
              auto json = Json::parse(requests[0].body());
              json["number"] = 5;
              return json;
            }()),
            fault);
  EXPECT_EQ(requests[4].line(), "DELETE /sandboxes/sbx_a/v1/sandbox/faults/5 HTTP/1.1");
  EXPECT_EQ(requests[5].body(), R"({"name":"half-deleted","guest":"guest@example.com"})");
  EXPECT_EQ(Json::parse(requests[6].body()).value("guest", ""), email);
}

}  // namespace
}  // namespace hlv::client
