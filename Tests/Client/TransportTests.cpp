// What goes wrong between this side and a service, and what keeps a connection.
#include <atomic>
#include <functional>
#include <future>

#include "Client/HttpClient.h"
#include "Tests/Client/ClientTest.h"

namespace hlv::client {
namespace {

using testing::CannedServer;

const auto http = &CannedServer::http;
constexpr const char* broken = "HLVTransportErrorDomain 3";
constexpr const char* unreadable = "HLVTransportErrorDomain 4";
constexpr const char* nothing = "{\"credit_cards\": null, \"instruments\": null}";

using Transport = ClientTest;

std::function<ClientRequest()> get(const std::string& path) {
  return [path] { return ClientRequest{"GET", path}; };
}

TEST_F(Transport, WhatIsNoWholeReplyOfAServiceIsOneErrorOfItsOwn) {
  const std::pair<std::string, std::string> rows[] = {
      {"", broken},
      {"HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n{\"a\"", broken},
      {"garbage\r\n\r\n", unreadable},
      {"HTTP/1.1 200 OK\r\nX: " + std::string(20'000, 'x') + "\r\n\r\n", unreadable},
      {"HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999\r\n\r\n", unreadable},
      {"HTTP/1.1 200 OK\r\n\r\n" + std::string(2'000'000, '['), unreadable},
      {http("{\"credit_cards\":", "200 OK"), unreadable},
      {http("{\"credit_cards\": 1, \"instruments\": \"x\"}", "200 OK"), unreadable},
      {http("{\"credit_cards\": [{}], \"instruments\": [{}]}", "200 OK"), unreadable},
      {http(std::string(60'000, '['), "200 OK"), unreadable},
      {http("{}", "302 Found"), unreadable},
      {http("{\"error\": {\"domain\": \"D\", \"number\": \"1\", \"message\": \"m\"}}", "400 B"),
       unreadable},
      {http("{\"error\": {\"domain\": \"D\", \"number\": 7, \"message\": \"\"}}", "418 T"), "D 7"},
      {std::string("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2B\r\n") + nothing +
           "\r\n0\r\n\r\n",
       "none"},
  };
  for (const auto& [bytes, error] : rows) {
    const CannedServer server({bytes, Then::drain});
    connect(server);
    EXPECT_EQ(nameOf(std::get<1>(fetchCards())), error) << bytes.substr(0, 80);
    EXPECT_EQ(nameOf(std::get<1>(list("tok"))), error) << bytes.substr(0, 80);
  }
}

TEST_F(Transport, AReplyThatDoesNotComeInTimeIsATimeoutAndNobodyThereIsUnreachable) {
  std::string url;
  {
    const CannedServer server({"HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n{", Then::hold});
    url = server.url();
    connect(url, url, std::chrono::milliseconds(30));
    EXPECT_EQ(nameOf(std::get<1>(fetchCards())), "HLVTransportErrorDomain 2");
    EXPECT_EQ(nameOf(std::get<1>(list("tok"))), "HLVTransportErrorDomain 2");
  }
  for (const std::string& nowhere : {url, std::string("http://no.such.host.invalid")}) {
    connect(nowhere, nowhere);
    EXPECT_EQ(nameOf(std::get<1>(fetchCards())), "HLVTransportErrorDomain 1") << nowhere;
  }
}

TEST_F(Transport, AReplyAfterTheTimeoutBelongsToNoOtherCall) {
  std::promise<void> late;
  const CannedServer server([&, isFirst = std::make_shared<std::atomic<bool>>(true)](
                                const CannedServer::Request&) -> CannedServer::Reply {
    if (!isFirst->exchange(false)) return {http(nothing, "200 OK"), Then::next};
    late.get_future().wait();
    return {http("{\"credit_cards\": []}", "200 OK"), Then::next};
  });
  connect(server.url(), server.url(), std::chrono::milliseconds(30));
  EXPECT_EQ(nameOf(std::get<1>(fetchCards())), "HLVTransportErrorDomain 2");
  late.set_value();
  connect(server);
  EXPECT_FALSE(std::get<0>(fetchCards())) << "this one brings no list";
}

TEST_F(Transport, AConnectionIsNotKeptAfterAReplyThatLeavesItUnclear) {
  for (const std::string& bytes :
       {http(nothing, "200 OK") + http(nothing, "200 OK"),
        std::string("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: 0\r\n\r\n")}) {
    const CannedServer server({bytes, Then::next});
    connect(server);
    fetchCards();
    fetchCards();
    ASSERT_EQ(server.requests().size(), 2U);
    EXPECT_EQ(server.requests()[1].connection, 2) << bytes.substr(0, 80);
  }
}

std::string described(const CannedServer::Request& request) {
  return request.method + request.target + request.idempotencyKey.value_or("") + request.body;
}

// A kept connection may end while the next request is on its way.
TEST_F(Transport, OnlyARequestThatMayBeRepeatedIsSentAgain) {
  struct Row {
    const char* name;
    std::string method;
    NullableString key;
    /// What the kept connection still says.
    std::string bytes;
    std::string error;
    std::size_t requests;
  };
  const Row rows[] = {
      {"a read", "GET", std::nullopt, "", "none", 3},
      {"a creation with a key", "POST", "key", "", "none", 3},
      {"a creation without one", "POST", std::nullopt, "", broken, 2},
      {"a deletion", "DELETE", std::nullopt, "", broken, 2},
      {"a read whose reply has begun", "GET", std::nullopt, "HTTP/1.1 2", broken, 2},
  };
  for (const auto& row : rows) {
    std::atomic<int> arrived{0};
    const CannedServer server([&](const CannedServer::Request&) -> CannedServer::Reply {
      if (++arrived == 2) return {row.bytes, Then::drain};
      return {http("{}", "200 OK"), Then::next};
    });
    const HttpClient client(*ServiceURL::read(server.url()), std::chrono::seconds(30),
                            std::make_shared<HttpLoop>());
    EXPECT_FALSE(client.send({"GET", "/first"}).error) << row.name;
    ClientRequest request{row.method, "/second", {{"member", 1}}};
    request.idempotencyKey = row.key;
    EXPECT_EQ(nameOf(client.send(request).error), row.error) << row.name;
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), row.requests) << row.name;
    EXPECT_EQ(requests[1].connection, 1) << row.name;
    if (requests.size() > 2) EXPECT_EQ(described(requests[2]), described(requests[1])) << row.name;
  }
  const CannedServer server({"", Then::drain});
  connect(server);
  EXPECT_EQ(nameOf(std::get<1>(fetchCards())), broken);
  EXPECT_EQ(server.requests().size(), 1U) << "a new connection is not tried twice";
}

// Nothing waits for a reply, so that the one that does not come holds up none.
TEST_F(Transport, ManyCallsAtOnceEachGetTheirOwnReply) {
  constexpr int calls = 100;
  const CannedServer server([](const CannedServer::Request& request) -> CannedServer::Reply {
    if (request.target == "/never") return {"", Then::hold};
    return {http("{\"path\": \"" + request.target + "\"}", "200 OK"), Then::next};
  });
  auto loop = std::make_shared<HttpLoop>();
  const auto token = std::make_shared<int>();
  {
    const HttpClient client(*ServiceURL::read(server.url()), std::chrono::seconds(60), loop);
    client.send(get("/never"), [token](const ClientReply&) { ADD_FAILURE() << "nobody replied"; });
    const auto done = std::make_shared<std::promise<void>>();
    std::atomic<int> right{0};
    std::atomic<int> ended{0};
    for (int i = 0; i < calls; ++i) {
      const auto path = "/" + std::to_string(i);
      client.send(get(path), [&, done, path](const ClientReply& reply) {
        if (!reply.error && reply.body.value("path", "") == path) ++right;
        // A completion may wait for another call, on the loop's own thread.
        if (path == "/0" && !client.send({"GET", "/inner"}).error) ++right;
        if (++ended == calls) done->set_value();
      });
    }
    done->get_future().wait();
    EXPECT_EQ(right, calls + 1);
    EXPECT_FALSE(loop->isIdle());
    EXPECT_EQ(token.use_count(), 2);
  }
  loop.reset();
  EXPECT_EQ(token.use_count(), 1) << "what has not ended goes with the loop";
}

TEST_F(Transport, TheLastHolderOfALoopMayBeItsOwnCompletion) {
  const CannedServer server({http("{}", "200 OK"), Then::next});
  const auto done = std::make_shared<std::promise<void>>();
  {
    auto client = std::make_shared<HttpClient>(
        *ServiceURL::read(server.url()), std::chrono::seconds(30), std::make_shared<HttpLoop>());
    std::promise<void> released;
    client->send(get("/"),
                 [done, kept = client, wait = released.get_future().share()](const ClientReply&) {
                   wait.wait();
                   done->set_value();
                 });
    client.reset();
    released.set_value();
  }
  done->get_future().wait();
}

TEST_F(Transport, OnThisSideTheNetworkCanBeOffToo) {
  const CannedServer server({http(nothing, "200 OK"), Then::next});
  connect(server);
  sandbox->setReachable(false);
  EXPECT_EQ(nameOf(std::get<1>(fetchCards())), "HLVURLErrorDomain 1");
  EXPECT_EQ(nameOf(addInstrument("visa", "tok")), "HLVURLErrorDomain 1");
  EXPECT_EQ(server.requests().size(), 0U);
}

TEST_F(Transport, OnlyAPlainURLIsOne) {
  const std::string good = "http://localhost";
  for (const std::string url :
       {"", "127.0.0.1:80", "https://127.0.0.1:80", "http://:80", "http://a:", "http://a:65536",
        "http://a b:80", "http://a:80\r\nX: y", "http://a:80//x", "http://a:80/x?y"}) {
    EXPECT_THROW((void)RemoteHost::open(sandbox, {url, good}), ClientError) << url;
    EXPECT_THROW((void)RemoteHost::open(sandbox, {good, url}), ClientError) << url;
  }
  const auto url = ServiceURL::read("http://some.host/sandboxes/sbx_a/");
  ASSERT_TRUE(url);
  EXPECT_EQ(url->host + " " + url->port + " " + url->path, "some.host 80 /sandboxes/sbx_a");
}

}  // namespace
}  // namespace hlv::client
