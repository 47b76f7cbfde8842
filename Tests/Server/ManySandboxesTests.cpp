// Sandboxes of one server: what they need while nobody uses them.
#include <SQLiteCpp/SQLiteCpp.h>

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
};

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
  EXPECT_FALSE(registry->findOpen("a")) << "it waits for its end";
  const auto again = registry->open("a");
  // Those that wait for their end leave descriptors to others.
  for (int i = 0; i < 20; ++i) registry->create({.id = "more" + std::to_string(i)});
  go.set_value();
  writers->join();
  again->store().read([](Database& database) {
    EXPECT_EQ(database.integer("SELECT count(*) FROM request_gaps"), 0);
    EXPECT_TRUE(readSetting(database, "request-log-open")) << "a kill would be noticed";
  });

  const auto folder = storePath() + ".sandboxes/";
  registry.reset();
  std::filesystem::resize_file(folder + "registry.sqlite", 0);
  EXPECT_THROW(Registry(storePath(), {}, writers), Problem);
  EXPECT_TRUE(std::filesystem::exists(folder + "b.sqlite")) << "its list alone is gone";
}

}  // namespace
}  // namespace hlv::sandbox::server
