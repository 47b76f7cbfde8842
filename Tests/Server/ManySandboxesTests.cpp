// Sandboxes of one server: each is a world of its own.
#include <SQLiteCpp/SQLiteCpp.h>

#include <algorithm>
#include <boost/asio/post.hpp>
#include <filesystem>
#include <fstream>
#include <future>

#include "Sandbox/Store/Settings.h"
#include "Server/Api/Registry.h"
#include "Tests/Server/ScopedLimit.h"
#include "Tests/Server/ServerTest.h"

namespace hlv::sandbox::server {
namespace {

class ManySandboxes : public ServerTest {
 protected:
  Json create(const Json& wanted) {
    return require(201, askProvider("POST /v1/sandboxes", wanted));
  }
  /// A guest with a token, who has one card at both sides. Returns what both sides made up.
  std::string live(const std::string& in) {
    require(200, askBackend("PUT " + in + guestPath()));
    const auto user = require(201, askProvider("POST " + in + "/v1/users", newUser()));
    const auto card = require(201, askBackend("POST " + in + guestPath() + "/cards", newCard()));
    return user["token"].get<std::string>() + card["credit_card"]["id"].get<std::string>();
  }
  Json guestIn(const std::string& in) { return bodyOf(askBackend("GET " + in + guestPath())); }
};

TEST_F(ManySandboxes, AreCreatedAsAskedAndShareNothing) {
  serve();
  const auto made = create({{"id", "a"},
                            {"seed", 18'446'744'073'709'551'615U},
                            {"clock", "2033-01-31T00:00:00Z"},
                            {"in_memory", true}});
  EXPECT_EQ(made["seed"], 18'446'744'073'709'551'615U);
  EXPECT_TRUE(made["clock"].get<std::string>().starts_with("2033-01-31T00:"));
  EXPECT_EQ(made["in_memory"], true);
  require(201, askProvider("PUT /v1/sandboxes/b", {{"seed", 7}}));

  const auto lived = live("/sandboxes/b");
  EXPECT_EQ(askBackend("GET /sandboxes/a" + guestPath()).code(), "unknown-guest");
  EXPECT_EQ(guestIn("")["credit_cards"].size(), 0U);
  EXPECT_EQ(guestIn("/sandboxes/default"), guestIn(""));
  for (const bool inMemory : {true, false}) {
    const auto in = inMemory ? "c" : "d";
    create({{"id", in}, {"seed", 7}, {"in_memory", inMemory}});
    EXPECT_EQ(live(std::string("/sandboxes/") + in), lived) << "the same seed";
  }

  const Json fault = {{"operation", "fetchGuestCreditCards"}, {"kind", "error"}};
  require(200, askProvider("POST /sandboxes/b/v1/sandbox/faults", fault));
  require(200, askProvider("PUT /sandboxes/c/v1/sandbox/network", {{"on", false}}));
  const auto cardsIn = [&](const std::string& in) {
    return askBackend("GET /sandboxes/" + in + guestPath() + "/cards").status;
  };
  EXPECT_EQ(cardsIn("d"), 200);
  EXPECT_EQ(cardsIn("c"), 503);
  EXPECT_EQ(cardsIn("b"), 500);
  EXPECT_EQ(
      bodyOf(askProvider("GET /sandboxes/d/v1/sandbox/requests?path=/v1/users"))["requests"].size(),
      1U);

  require(204, askProvider("DELETE /v1/sandboxes/b"));
  EXPECT_EQ(askBackend("GET /sandboxes/b" + guestPath()).code(), "no-such-sandbox");
  create({{"id", "b"}});
  EXPECT_EQ(askBackend("GET /sandboxes/b" + guestPath()).code(), "unknown-guest") << "a new one";

  const auto page = require(200, askProvider("GET /v1/sandboxes?limit=2&after=a"));
  EXPECT_EQ(page["sandboxes"][0]["id"], "b");
  EXPECT_EQ(page["sandboxes"].size(), 2U);
  EXPECT_EQ(page["next"], "c");
}

TEST_F(ManySandboxes, GoBackToASnapshotAndHaveAClockOfTheirOwn) {
  serve();
  const client::SandboxClient client(server->providerURL());
  create({{"id", "a"}});
  const std::string in = "/sandboxes/a";
  live(in);
  const auto snapshot = client.snapshot("a");
  const Json wanted = {{"snapshot", snapshot.id}};
  const auto session = require(200, askBackend("PUT " + in + guestPath("x@y")))["session"];
  require(201, askBackend("POST " + in + guestPath() + "/cards", newCard("ins_y")));
  const auto later = guestIn(in);
  EXPECT_EQ(later["credit_cards"].size(), 2U);

  EXPECT_EQ(client.restore("a", snapshot.id).guests, 1);
  EXPECT_EQ(guestIn(in)["credit_cards"].size(), 1U);
  EXPECT_GT(guestIn(in)["revision"], later["revision"]) << "it never goes back";
  EXPECT_EQ(askBackend("GET " + in + guestPath("x@y"), nullptr,
                       "Authorization: Bearer " + session.get<std::string>() + "\r\n")
                .status,
            401);
  const auto log = require(200, askProvider("GET " + in + "/v1/sandbox/requests"));
  EXPECT_EQ(log["gaps"].size(), 0U);
  const auto has = [&](const std::string& path) {
    return std::any_of(log["requests"].begin(), log["requests"].end(),
                       [&](const auto& each) { return each["path"] == in + path; });
  };
  EXPECT_TRUE(has(guestPath("x@y"))) << "it is kept, whatever happened to the rest";
  EXPECT_TRUE(has("/v1/sandbox/restore"));

  for (const bool inMemory : {true, false}) {
    const auto id = inMemory ? "m" : "f";
    EXPECT_EQ(
        create({{"id", id}, {"snapshot", wanted["snapshot"]}, {"in_memory", inMemory}})["guests"],
        1);
    const auto other = "/sandboxes/" + std::string(id);
    EXPECT_EQ(guestIn(other)["credit_cards"], guestIn(in)["credit_cards"]);
    const auto own = require(200, askProvider("GET " + other + "/v1/sandbox/requests"));
    EXPECT_EQ(own["gaps"].size(), 0U);
    for (const auto& each : own["requests"]) {
      EXPECT_TRUE(each["path"].get<std::string>().starts_with(other)) << each["path"];
    }
  }

  const auto file = storePath() + ".sandboxes/snapshots/" + snapshot.id + ".sqlite";
  SQLite::Database(file, SQLite::OPEN_READWRITE).exec("PRAGMA user_version = 1");
  const auto before = guestIn(in);
  for (const auto& refused : {askProvider("POST " + in + "/v1/sandbox/restore", wanted),
                              askProvider("POST /v1/sandboxes", wanted)}) {
    EXPECT_EQ(require(409, refused)["error"]["code"], "snapshot-version");
    EXPECT_EQ(refused.body.find(storePath()), std::string::npos) << "a path of the server's";
  }
  EXPECT_EQ(guestIn(in), before);
  client.removeSnapshot(snapshot.id);
  EXPECT_EQ(client.snapshots().size(), 0U);
  EXPECT_TRUE(std::filesystem::is_empty(std::filesystem::path(file).parent_path()));

  const auto state = [&] {
    const auto sides = askProvider("GET " + in + "/v1/sandbox/sides?guest=" + email);
    return require(200, sides)["instruments"][0]["state"];
  };
  const auto usable = state();
  client.setClock("a", "2099-12-31T00:00:00Z");
  EXPECT_NE(state(), usable);
  EXPECT_EQ(askProvider("POST /v1/users", newUser()).status, 201) << "elsewhere it is another day";
  client.reset("a");
  EXPECT_EQ(askProvider("POST " + in + "/v1/users", newUser()).status, 201);
}

TEST_F(ManySandboxes, NeedFewDescriptorsAndAreFoundAgain) {
  const testing::ScopedLimit<RLIMIT_NOFILE> few(128);
  serve();
  constexpr int count = 100;
  const auto name = [](int number) { return "s" + std::to_string(number); };
  for (int i = 0; i < count; ++i) {
    require(201, askProvider("PUT /v1/sandboxes/" + name(i)));
    require(200, askBackend("PUT /sandboxes/" + name(i) + guestPath(name(i) + "@x")));
  }
  const auto folder = storePath() + ".sandboxes/";
  const std::string leftBehind[] = {folder + "x.sqlite-wal", folder + "snapshots/y.sqlite"};
  create({{"id", "memory"}, {"in_memory", true}});
  create({{"id", "due"}, {"ttl_seconds", 3'600}});
  for (const bool restarts : {false, true}) {
    if (restarts) {
      server.reset();
      SQLite::Database(storePath() + ".sandboxes/registry.sqlite", SQLite::OPEN_READWRITE)
          .exec("UPDATE sandboxes SET expires = 1 WHERE expires IS NOT NULL");
      for (const auto& file : leftBehind) std::ofstream(file) << "x";
      const auto change = [&](const char* sql) {
        SQLite::Database(folder + "s0.sqlite", SQLite::OPEN_READWRITE).exec(sql);
      };
      change("CREATE TRIGGER t BEFORE INSERT ON settings BEGIN SELECT RAISE(ABORT, 'full'); END");
      serve();
      for (int i = 0; i < 2; ++i) EXPECT_EQ(askProvider("GET /v1/sandboxes/s0").status, 507);
      const auto all = client::SandboxClient(server->providerURL()).list();
      EXPECT_EQ(all.size(), count + 1U) << "it does not hide the others";
      for (const auto& each : all) EXPECT_EQ(each.problem.has_value(), each.id == "s0") << each.id;
      change("DROP TRIGGER t");
      for (const auto& file : leftBehind) EXPECT_FALSE(std::filesystem::exists(file)) << file;
    }
    for (int i = 0; i < count; i += restarts ? 1 : 10) {
      EXPECT_EQ(askBackend("GET /sandboxes/" + name(i) + guestPath(name(i) + "@x")).status, 200)
          << i;
    }
  }
  for (const auto* gone : {"memory", "due"}) {
    EXPECT_EQ(askProvider(std::string("GET /v1/sandboxes/") + gone).code(), "no-such-sandbox");
  }
}

TEST_F(ManySandboxes, HaveNoGapInTheLogWhenTheyAreUsedAgainBeforeTheyAreClosed) {
  const testing::ScopedLimit<RLIMIT_NOFILE> few(64);
  const auto writers = std::make_shared<Writers>(1);
  std::promise<void> go;
  boost::asio::post(*writers, [&] { go.get_future().wait(); });
  auto registry = std::make_unique<Registry>(storePath(), std::nullopt, writers);
  for (const auto* id : {"a", "b", "c"}) registry->create({.id = id});
  EXPECT_FALSE(registry->openWorld("a")) << "it waits for its end";
  const auto again = registry->world("a");
  // Those that wait for their end leave descriptors to others.
  for (int i = 0; i < 20; ++i) registry->create({.id = "more" + std::to_string(i)});
  go.set_value();
  writers->join();
  again->store().read([](sandbox::Database& database) {
    EXPECT_EQ(database.integer("SELECT count(*) FROM request_gaps"), 0);
    EXPECT_TRUE(sandbox::readSetting(database, "request-log-open")) << "a kill would be noticed";
  });

  const auto folder = storePath() + ".sandboxes/";
  registry.reset();
  std::filesystem::resize_file(folder + "registry.sqlite", 0);
  EXPECT_THROW(Registry(storePath(), {}, writers), Problem);
  EXPECT_TRUE(std::filesystem::exists(folder + "b.sqlite")) << "its list alone is gone";
}

}  // namespace
}  // namespace hlv::sandbox::server
