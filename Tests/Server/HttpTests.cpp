// The listener: what it takes, what it rejects, and what becomes of a reply.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <boost/asio/post.hpp>
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <optional>
#include <thread>
#include <utility>

#include "Server/Http/HttpError.h"
#include "Server/Http/HttpListener.h"
#include "Server/Http/Routes.h"
#include "Tests/Secrecy/ProcessMemory.h"
#include "Tests/Server/RawClient.h"
#include "Tests/Server/ScopedLimit.h"
#include "Values/Wiped.h"

namespace hlv::sandbox::server {
namespace {

using namespace std::chrono_literals;
using testing::ask;
using testing::RawClient;
using testing::requestOf;
using Json = nlohmann::ordered_json;
using Then = OutgoingReply::Then;

HttpReply jsonReply(const Json& body) {
  HttpReply reply;
  reply.body = body.dump();
  return reply;
}

/// Serves whatever a test adds, and keeps what finished.
class ScriptedHandler : public HttpHandler {
 public:
  struct Finished {
    std::string id, target, code;
    int status;
    std::size_t requestBytes, replyBytes;
  };

  ScriptedHandler() {
    routes.add("GET", "fine", [](const auto&, const Reply& reply) { reply(jsonReply("fine")); });
    const auto echo = [](const HttpRequest& request, const Reply& reply) {
      reply(jsonReply({{"path", request.path}, {"query", request.query}, {"body", request.body}}));
    };
    for (const auto* method : {"GET", "POST", "PUT", "DELETE"}) routes.add(method, "echo/*", echo);
    routes.add("GET", "held", [this](const auto&, const Reply& reply) { hold(reply); });
    routes.add("POST", "held", [this](const auto&, const Reply& reply) { hold(reply); });
    routes.add("GET", "large", [](const auto&, const Reply& reply) {
      reply(jsonReply(std::string(16U << 20, 'x')));
    });
    routes.add("GET", "broken", [](const auto&, const auto&) { throw std::runtime_error("no"); });
  }

  void handle(const HttpRequest& request, Reply reply) override {
    routes.find(request)(request, reply);
  }

  void finished(const FinishedRequest& request) override {
    const std::lock_guard lock(mutex_);
    finished_.push_back({request.request.id, request.request.target, request.reply.code,
                         request.status, request.requestBytes, request.replyBytes});
    changed_.notify_all();
  }

  std::vector<Finished> waitForFinished(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return finished_.size() >= count; });
    return finished_;
  }
  void hold(const Reply& reply) {
    const std::lock_guard lock(mutex_);
    held_.push_back(reply);
    changed_.notify_all();
  }
  /// The replies that are owed, once there are as many.
  std::vector<Reply> waitForHeld(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return held_.size() >= count; });
    return std::exchange(held_, {});
  }

  Routes<std::function<void(const HttpRequest&, const Reply&)>> routes;

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Finished> finished_;
  std::vector<Reply> held_;
};

class HttpTest : public ::testing::Test {
 protected:
  /// So long that what waits for them in vain does not end.
  HttpTest() {
    auto& limits = options.limits;
    limits.headTime = limits.bodyTime = limits.transferTime = limits.idleTime = limits.answerTime =
        1h;
  }
  ~HttpTest() override {
    listener.reset();
    loops.stop();
  }

  void listen() {
    listener.reset();
    listener = std::make_unique<HttpListener>(loops, options, handler);
    port = listener->port();
  }

  /// Keeps all loops from running anything else until the guard goes.
  std::shared_ptr<void> blockLoops() {
    const auto release = std::make_shared<std::promise<void>>();
    const auto released = release->get_future().share();
    for (const auto& loop : loops.all()) {
      const auto blocked = std::make_shared<std::promise<void>>();
      boost::asio::post(*loop.context, [blocked, released] {
        blocked->set_value();
        released.wait();
      });
      blocked->get_future().wait();
    }
    return {nullptr, [release](void*) { release->set_value(); }};
  }

  /// All loops have run what they had to.
  void settle() {
    for (std::size_t i = 0; i < 2 * loops.all().size(); ++i) {
      const auto ran = std::make_shared<std::promise<void>>();
      boost::asio::post(*loops.next().context, [ran] { ran->set_value(); });
      ran->get_future().wait();
    }
  }

  EventLoops loops{2};
  ScriptedHandler handler;
  ListenOptions options;
  std::unique_ptr<HttpListener> listener;
  int port = 0;
};

TEST_F(HttpTest, KeepsConnectionsAndServesPipelinedRequestsInOrder) {
  listen();
  RawClient client(port);
  client.send(requestOf("GET /held") + requestOf("POST /echo/1", "{\"a\": 1}") +
              requestOf("HEAD /fine") + requestOf("GET /none") + requestOf("GET /echo/2"));
  auto held = handler.waitForHeld(1);
  std::thread([&] { held[0](jsonReply("late")); }).join();
  held[0](jsonReply("twice"));
  EXPECT_EQ(client.receive().body, "\"late\"");
  EXPECT_EQ(Json::parse(client.receive().body)["body"], "{\"a\": 1}");
  const auto head = client.receive(true);
  EXPECT_EQ(head.header("Content-Length"), "6");
  EXPECT_EQ(client.receive().code(), "no-such-resource");
  EXPECT_EQ(Json::parse(client.receive().body)["path"], Json({"echo", "2"}));

  client.send(requestOf("POST /echo/4", "",
                        "Content-Type: application/json\r\n"
                        "Content-Length: 2\r\nExpect: 100-continue\r\n"));
  EXPECT_EQ(client.receive().status, 100);
  EXPECT_EQ(client.send("{}").receive().status, 200);

  const auto slowly = requestOf("POST /echo/3", "{}") + requestOf("GET /fine");
  for (const char byte : slowly) client.send({&byte, 1});
  EXPECT_EQ(client.receive().status, 200);
  const auto last = client.receive();
  EXPECT_EQ(last.body, "\"fine\"");

  const auto finished = handler.waitForFinished(8);
  EXPECT_EQ(finished[7].id, last.header("X-Request-Id"));
  EXPECT_EQ(finished[3].code, "no-such-resource");
  EXPECT_EQ(finished[6].requestBytes, requestOf("POST /echo/3", "{}").size());
  EXPECT_EQ(finished[7].replyBytes, last.head.size() + last.body.size());
}

TEST_F(HttpTest, RejectsWhatIsNoRequestInOneShape) {
  options.allowedHosts = {"shop.test"};
  listen();
  const auto get = [](const std::string& headers) { return requestOf("GET /fine", "", headers); };
  const auto post = [](const std::string& headers) {
    return "POST /echo/1 HTTP/1.1\r\nHost: localhost\r\n" + headers + "\r\n{}";
  };
  const auto from = [](const std::string& host) {
    return "GET /fine HTTP/1.1\r\nHost: " + host + "\r\n\r\n";
  };
  const std::string json = "Content-Type: application/json\r\n";
  struct Row {
    std::string bytes;
    int status;
    std::string code = {};
  };
  std::vector<Row> rows = {
      {"garbage\r\n\r\n", 400, "malformed-request"},
      {"PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", 400, "malformed-request"},
      {requestOf("OPTIONS *"), 400, "malformed-request"},
      {requestOf("GET fine"), 400, "malformed-request"},
      {get("Host: localhost\r\n"), 400, "malformed-request"},
      {post(json + "Transfer-Encoding: chunked\r\n"), 411, "length-required"},
      {requestOf("POST /echo/1", "", json + "Transfer-Encoding: gzip\r\n"), 411, "length-required"},
      {requestOf("POST /echo/1", "", json + "Transfer-Encoding: chunked, chunked\r\n"), 411,
       "length-required"},
      {post("Content-Length: 2\r\nContent-Type: application/jsonp\r\n"), 415,
       "unsupported-media-type"},
      {post(json + "Content-Length: 2\r\nContent-Encoding: gzip\r\n"), 415,
       "unsupported-media-type"},
      {post("Content-Type: Application/JSON; charset=utf-8\r\nContent-Length: 2\r\n"), 200},
      {post(json + "Content-Length: 70000\r\n"), 413, "too-large"},
      {requestOf("POST /echo/1", std::string(64UL * 1024, ' ')), 200},
      {requestOf("GET /" + std::string(2'000, 'a')), 414, "path-too-long"},
      {get("X: " + std::string(20'000, 'h') + "\r\n"), 431, "head-too-large"},
      {requestOf("GET /broken"), 500, "service-failed"},
      {requestOf("DELETE /fine"), 405, "method-not-allowed"},
      {requestOf("GET http://evil.test/fine"), 403, "foreign-name"},
      {from("localhost:1"), 200},
      {from("[::1]:80"), 200},
      {from("10.0.2.2"), 200},
      {from("shop.test:8080"), 200},
      {from("evil.test"), 403, "foreign-name"},
      {from("192.168.1.5"), 403, "foreign-name"},
      {from("me@localhost"), 400, "malformed-request"},
      {from("127.0.0.1:1:2@[::"), 400, "malformed-request"},
      {get("Origin: http://127.0.0.1\r\n"), 200},
      {get("Origin: https://shop.test:444\r\n"), 200},
      {get("Origin: http://127.0.0.1:81\r\n"), 403, "foreign-origin"},
      {get("Origin: http://evil.test\r\n"), 403, "foreign-origin"},
  };
  for (const auto* length :
       {"Content-Length: -5", "Content-Length: 5x", "Content-Length: 999999999999999999999999",
        "Content-Length: 2\r\nContent-Length: 2", "Content-Length: 2\r\nContent-Length: 3",
        "Content-Length: 4\r\nTransfer-Encoding: chunked",
        "Transfer-Encoding: \x0b"
        "chunked\r\nContent-Length: 2"}) {
    rows.push_back({post(json + length + "\r\n"), 400, "malformed-request"});
  }
  std::size_t count = 0;
  for (const auto& row : rows) {
    const auto response = RawClient(port).send(row.bytes).receive();
    const auto shown = row.bytes.substr(0, 120);
    EXPECT_EQ(response.status, row.status) << shown;
    EXPECT_EQ(response.code(), row.code) << shown;
    const auto finished = handler.waitForFinished(++count).back();
    EXPECT_EQ(finished.status, row.status) << shown;
    EXPECT_EQ(finished.code, row.code) << shown;
    EXPECT_EQ(finished.id, response.header("X-Request-Id")) << shown;
    if (row.status == 411) EXPECT_EQ(response.header("Connection"), "close") << shown;
    if (row.code.empty()) continue;
    const auto error = Json::parse(response.body)["error"];
    EXPECT_EQ(error["request_id"], finished.id) << shown;
    EXPECT_EQ(error["domain"], requestErrorDomain) << shown;
    EXPECT_EQ(error["number"], row.status) << shown;
  }
  EXPECT_EQ(ask(port, "DELETE /echo/1/2").status, 404);
  EXPECT_EQ(ask(port, "PATCH /echo/1", "{}").header("Allow"), "DELETE, GET, POST, PUT");
  EXPECT_EQ(ask(port, "OPTIONS /fine").header("Access-Control-Allow-Origin"), "");

  options.beyondThisMachine = true;
  listen();
  EXPECT_EQ(RawClient(port).send(from("192.168.1.5")).receive().status, 200);
  EXPECT_EQ(RawClient(port).send(from("evil.test")).receive().status, 403);
}

TEST_F(HttpTest, DecodesPathsAndQueries) {
  listen();
  const std::pair<std::string, Json> rows[] = {
      {"/echo/a%40b+c", {{"path", {"echo", "a@b+c"}}}},
      {"/echo/a/", {{"path", {"echo", "a"}}}},
      {"/echo/%2e%2F%C3%BC", {{"path", {"echo", "./\xC3\xBC"}}}},
      {"/echo/x?a=1&b=%26+&a=2&c", {{"query", {{"a", "1"}, {"b", "&+"}, {"c", ""}}}}},
      {"/echo/%zz", nullptr},
      {"/echo/%00", nullptr},
      {"/echo/%ff", nullptr},
      {"/echo/\xC3\xBC", nullptr},
  };
  for (const auto& [target, expected] : rows) {
    const auto response = ask(port, "GET " + target);
    EXPECT_EQ(response.status, expected.is_null() ? 400 : 200) << target;
    const auto body = Json::parse(response.body);
    for (const auto& [key, value] : expected.items()) EXPECT_EQ(body[key], value) << target;
  }
  EXPECT_EQ(ask(port, "GET //fine").status, 404);
}

TEST_F(HttpTest, LetsSlowClientsGo) {
  handler.routes.add("GET", "never", [](const auto&, const Reply& reply) {
    auto never = jsonReply("nothing");
    never.fault = [](OutgoingReply& outgoing) { outgoing.cut(0, Then::hold); };
    reply(std::move(never));
  });
  const std::pair<std::chrono::milliseconds HttpLimits::*, std::string> rows[] = {
      {&HttpLimits::idleTime, ""},
      {&HttpLimits::headTime, "GET /fine HTTP/1.1\r\nHost: loc"},
      {&HttpLimits::bodyTime, requestOf("POST /echo/1", "{}").substr(0, 94)},
      {&HttpLimits::answerTime, requestOf("GET /held")},
      {&HttpLimits::answerTime, requestOf("GET /never")},
  };
  for (const auto& [time, bytes] : rows) {
    options.limits.*time = 20ms;
    listen();
    EXPECT_EQ(RawClient(port).send(bytes).receiveRest().bytes, "") << bytes;
    options.limits.*time = 1h;
  }
  options.limits.transferTime = 20ms;
  listen();
  RawClient client(port);
  client.send(requestOf("GET /large"));
  const auto finished = handler.waitForFinished(4);
  EXPECT_EQ(finished.back().target, "/large");
  EXPECT_EQ(finished.back().status, 0);
}

TEST_F(HttpTest, FreesWhatIsHeldForAClientThatLeaves) {
  const auto context = std::make_shared<int>();
  std::function<void(HttpReply&)> change;
  handler.routes.add("GET", "keeps", [&](const auto&, const Reply& reply) {
    auto kind = jsonReply("kept");
    kind.context = context;
    change(kind);
    reply(std::move(kind));
    handler.hold(reply);
  });
  listen();
  const std::function<void(HttpReply&)> rows[] = {
      [](HttpReply& reply) { reply.delay = 30min; },
      [](HttpReply& reply) { reply.fault = [](auto& sent) { sent.cut(50, Then::hold); }; },
      [](HttpReply& reply) {
        reply.fault = [](auto& sent) { sent.piece = 1, sent.pause = 30min; };
      },
      [](HttpReply& reply) { reply.events = [] { return std::string(); }; },
  };
  std::size_t count = 0;
  for (const auto& row : rows) {
    change = row;
    for (const bool isRude : {false, true}) {
      RawClient client(port);
      // What is sent while it waits hides nothing.
      client.send(requestOf("GET /keeps") + requestOf("GET /fine"));
      handler.waitForHeld(1);
      if (isRude) client.abort();
    }
    handler.waitForFinished(count += 2);
  }
  settle();
  EXPECT_EQ(context.use_count(), 1);
}

TEST_F(HttpTest, LetsConnectionsWaitThatCannotBeTakenYet) {
  // A sanitizer needs descriptors itself, the first time that it sees a class.
  for (const bool isCapped : {true, false}) {
    options.limits.connections = isCapped ? 3 : 10'000;
    listen();
    std::optional<testing::ScopedLimit<RLIMIT_NOFILE>> few;
    std::deque<RawClient> clients;
    {
      const auto block = blockLoops();
      for (int i = 0; i < 100; ++i) clients.emplace_back(port).send(requestOf("GET /fine"));
      if (!isCapped) {
        const int next = ::dup(0);
        ::close(next);
        few.emplace(static_cast<rlim_t>(next) + 5);
      }
    }
    if (isCapped) {
      handler.waitForFinished(3);
      settle();
      EXPECT_EQ(handler.waitForFinished(3).size(), 3U);
    }
    for (; !clients.empty(); clients.pop_front()) {
      EXPECT_EQ(clients.front().receive().status, 200);
    }
  }
}

TEST_F(HttpTest, EndsWhateverItsConnectionsDo) {
  handler.routes.add("GET", "events", [](const auto&, const Reply& reply) {
    HttpReply stream;
    stream.events = [] { return std::string("data: 1\n\n"); };
    reply(std::move(stream));
  });
  handler.routes.add("GET", "delayed", [](const auto&, const Reply& reply) {
    auto delayed = jsonReply("late");
    delayed.delay = 30min;
    reply(std::move(delayed));
  });
  listen();
  std::deque<RawClient> clients;
  for (const auto* bytes : {"", "GET /fi", "POST /echo/1 HTTP/1.1\r\nContent-Length: 5\r\n\r\n"}) {
    clients.emplace_back(port).send(bytes);
  }
  for (const auto* target : {"/held", "/delayed", "/large", "/fine", "/events"}) {
    clients.emplace_back(port).send(requestOf(std::string("GET ") + target));
  }
  EXPECT_EQ(clients[6].receive().status, 200);
  const auto head = clients[7].receiveUntil("data: 1\n\ndata: 1\n\n");
  EXPECT_NE(head.find("Content-Type: text/event-stream"), std::string::npos);
  const auto held = handler.waitForHeld(1);
  listener.reset();
  EXPECT_EQ(clients[3].receiveRest().bytes, "");
  EXPECT_THROW(RawClient{port}, std::runtime_error);
  for (const auto& finished : handler.waitForFinished(6)) {
    const bool left = finished.target == "/fine" || finished.target == "/events";
    EXPECT_EQ(finished.status, left ? 200 : finished.code.empty() ? 0 : 400) << finished.target;
  }
  held[0](jsonReply("nobody is there"));
  loops.stop();
  held[0](jsonReply("nor here"));
}

constexpr std::size_t size = 18;
const testing::HiddenDigits secret(1, size);

/// Sends what is made of the secret, and keeps none of it.
void sendSecretly(RawClient& client, const std::string& head, std::size_t times,
                  const std::string& tail = {}) {
  client.send(head);
  for (std::size_t i = 0; i < times; ++i) {
    auto text = secret.all();
    client.send(text);
    wipe(text);
  }
  client.send(tail);
}

TEST_F(HttpTest, OverwritesWhatItReceived) {
  const auto head = [](std::size_t bytes, const std::string& type = "json") {
    return "POST /held HTTP/1.1\r\nHost: localhost\r\nContent-Type: application/" + type +
           "\r\nContent-Length: " + std::to_string(bytes) + "\r\n\r\n";
  };
  listen();
  RawClient kept(port);
  for (const std::size_t times : {1UL, 3UL, 1'000UL}) {
    sendSecretly(kept, head(times * size), times);
    handler.waitForHeld(1)[0](jsonReply("fine"));
    EXPECT_EQ(kept.receive().status, 200);
  }
  std::size_t count = 3;
  const std::pair<std::string, std::string> rejected[] = {
      {head(size, "xml"), ""},
      {head(70'000), ""},
      {"GET /", " HTTP/9.9\r\n\r\n"},
      {"GET / HTTP/1.1\r\nHost : ", "\r\n\r\n"},
  };
  for (const auto& [before, after] : rejected) {
    RawClient client(port);
    sendSecretly(client, before, 1, after);
    EXPECT_GE(client.receive().status, 400);
    handler.waitForFinished(++count);
  }
  {
    RawClient client(port);
    sendSecretly(client, head(3'000), 10);
  }
  handler.waitForFinished(++count);
  RawClient waits(port);
  sendSecretly(waits, head(size), 1);
  const auto held = handler.waitForHeld(1);
  settle();
  EXPECT_FALSE(secret.areInMemory());
  const auto copy = secret.all() + " and more than fits into the text itself";
  EXPECT_TRUE(secret.areInMemory());
}

}  // namespace
}  // namespace hlv::sandbox::server
