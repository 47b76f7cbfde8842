// Every request is on record, whatever became of it.
#include <algorithm>
#include <filesystem>

#include "Tests/Server/ServerTest.h"

namespace hlv::sandbox::server {
namespace {

class RequestLogTest : public ServerTest {
 protected:
  Json read(const std::string& query = "") {
    return require(200, askProvider("GET /v1/sandbox/requests" + query));
  }
  std::vector<std::string> paths(const std::string& query) {
    std::vector<std::string> all;
    const auto log = read(query);
    for (const auto& request : log["requests"]) {
      all.push_back(request["path"].get<std::string>());
    }
    return all;
  }
};

TEST_F(RequestLogTest, HasEveryRequestRejectedOnesIncludedAndFindsThem) {
  serve();
  auto stream = listeningAt("GET /v1/sandbox/requests/stream");
  stream.receiveUntil("\r\n\r\n");
  const auto cards = guestPath() + "/cards";
  require(404, askBackend("GET /v1/guests/nobody@x"));
  require(415, testing::ask(portOf(server->backendURL()), "POST " + cards));
  require(401, testing::ask(portOf(server->providerURL()), "POST /v1/users", "{}"));
  require(403, testing::ask(portOf(server->consoleURL()), "GET /stored", "",
                            "Origin: http://evil.example\r\n"));
  EXPECT_EQ(RawClient(portOf(server->backendURL())).send("garbage\r\n\r\n").receive().status, 400);
  arm("addCreditCardForGuest", "twice");
  const auto added = askBackend("POST " + cards, newCard());
  require(405, askBackend("DELETE " + guestPath()));
  // A read that finds nothing is undone, and takes no record with it.
  require(404, askProvider("GET /v1/sandbox/requests/unknown"));
  for (int i = 0; i < 8; ++i) stream.receiveUntil("event: request");

  EXPECT_EQ(paths("?status=404"),
            (std::vector<std::string>{"/v1/guests/nobody@x", "/v1/sandbox/requests/unknown"}));
  EXPECT_EQ(read("?status=4xx")["requests"].size(), 7U);
  EXPECT_EQ(paths("?method=DELETE"), std::vector{guestPath()});
  EXPECT_EQ(paths("?fault=any"), std::vector{cards});
  EXPECT_EQ(paths("?path=cards&status=415"), std::vector{cards});

  const auto one = "GET /v1/sandbox/requests/" + added.header("X-Request-Id");
  const auto record = require(200, askProvider(one));
  EXPECT_EQ(record["fault"], "twice");
  EXPECT_EQ(record["listener"], "backend");
  EXPECT_GT(record["duration_ms"], 0.0);
  EXPECT_GT(record["reply_bytes"], record["request_bytes"]);
  ASSERT_EQ(record["events"].size(), 3U);
  EXPECT_EQ(record["events"][1]["what"], "fault 'twice' met addCreditCardForGuest");

  // Page after page, each request once, and what is read does not shift the pages.
  std::vector<std::int64_t> numbers;
  for (Json next = 0; !next.is_null() && numbers.size() < 7;) {
    const auto page = read("?limit=2&after=" + next.dump());
    EXPECT_LE(page["requests"].size(), 2U);
    for (const auto& request : page["requests"]) numbers.push_back(request["number"]);
    next = page["next"];
  }
  ASSERT_GE(numbers.size(), 7U);
  EXPECT_EQ(std::adjacent_find(numbers.begin(), numbers.end(), std::greater_equal()),
            numbers.end());
  EXPECT_EQ(read()["gaps"].size(), 0U);

  const auto har = require(200, askProvider("GET /v1/sandbox/har?status=201"))["log"];
  ASSERT_EQ(har["entries"].size(), 1U);
  EXPECT_EQ(har["entries"][0]["_id"], record["id"]);
  EXPECT_EQ(har["entries"][0]["time"], record["duration_ms"]);
  EXPECT_EQ(har["entries"][0]["response"]["bodySize"], record["reply_bytes"]);
}

TEST_F(RequestLogTest, OfASandboxIsFollowedUntilItIsDeleted) {
  serve();
  require(201, askProvider("PUT /v1/sandboxes/a"));
  auto other = listeningAt("GET /sandboxes/a/v1/sandbox/requests/stream");
  other.receiveUntil("\r\n\r\n");
  askBackend("GET /nothing");
  askBackend("GET /sandboxes/a/nowhere");
  EXPECT_EQ(other.receiveUntil("/nowhere").find("/nothing"), std::string::npos);
  require(204, askProvider("DELETE /v1/sandboxes/a"));
  other.receiveRest();
}

TEST_F(RequestLogTest, SaysWhatAProcessThatWasKilledTookWithIt) {
  serve();
  require(200, askBackend("GET " + guestPath()));
  const auto written = read()["requests"].size();
  EXPECT_GE(written, 1U);
  const auto last = read()["requests"].back()["number"];
  // As a process leaves them that ends at this moment.
  for (const auto* end : {"", "-wal"}) {
    std::filesystem::copy_file(storePath() + end, path("copy") + end);
  }
  serve([&](ServerOptions& wanted) { wanted.storePath = path("copy"); });
  const auto after = read();
  ASSERT_EQ(after["gaps"].size(), 1U);
  EXPECT_GE(after["gaps"][0]["after"], last);
  EXPECT_GE(after["requests"].size(), written);
  serve([&](ServerOptions& wanted) { wanted.storePath = path("copy"); });
  EXPECT_EQ(read()["gaps"].size(), 1U) << "what ends in order leaves none";
}

}  // namespace
}  // namespace hlv::sandbox::server
