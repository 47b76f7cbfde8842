#include <SQLiteCpp/SQLiteCpp.h>

#include <fstream>

#include "Sandbox/Store/Settings.h"
#include "Sandbox/Store/Store.h"
#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::sandbox {
namespace {

namespace fs = std::filesystem;

class StoreTest : public SandboxTest {
 protected:
  static std::string problemWith(const std::string& store, const std::string& log = {}) {
    return Sandbox::open({.storePath = store, .seed = {}, .remoteLogPath = log}).problem();
  }

  static void makeDatabase(const std::string& file, const char* sql) {
    SQLite::Database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(sql);
  }
};

TEST_F(StoreTest, EveryFileBelongsToItsOwnerAloneAlsoWhenAnEmptyOneWasThere) {
  std::ofstream(storePath()).close();
  fs::permissions(storePath(), fs::perms::others_read, fs::perm_options::add);
  start();
  createToken("visa");
  int files = 0;
  for (const auto& entry : fs::directory_iterator(path(""))) {
    EXPECT_EQ(entry.status().permissions(), fs::perms::owner_read | fs::perms::owner_write)
        << entry.path();
    ++files;
  }
  EXPECT_GE(files, 3) << "the store, its write-ahead log and the remote log";
}

TEST_F(StoreTest, WhatIsNoStoreIsRefusedInOneSentenceAndLeftAsItWas) {
  std::ofstream(path("garbage")) << "This is not a database, whatever its name says.";
  std::ofstream(path("short")) << "x";
  makeDatabase(path("other"), "PRAGMA journal_mode=WAL; CREATE TABLE t (x); PRAGMA user_version=1");
  makeDatabase(path("newer"), "PRAGMA application_id=1212962387; PRAGMA user_version=99");
  makeDatabase(path("damaged"), "PRAGMA application_id=1212962387; PRAGMA user_version=4");
  const std::pair<const char*, const char*> rows[] = {
      {"garbage", "it is no database"},  {"short", "is not a store"}, {"other", "another program"},
      {"newer", "version 99"},           {"damaged", "is damaged"},   {"", "is a directory"},
      {"missing/store", "No such file"},
  };
  for (const auto& [name, part] : rows) {
    const auto content = contentOf(path(name));
    const auto problem = problemWith(path(name));
    EXPECT_NE(problem.find(part), std::string::npos) << name << ": " << problem;
    EXPECT_EQ(problem.find('\n'), std::string::npos);
    EXPECT_EQ(contentOf(path(name)), content) << name;
    EXPECT_FALSE(fs::exists(path(std::string(name) + ".log"))) << name;
  }
  EXPECT_NE(problemWith(storePath(), path("missing/log")).find("The log"), std::string::npos);
}

TEST_F(StoreTest, OpensWhereAProcessWasKilledWhileItMovedTheLogIntoTheFile) {
  auto store = Store::open(storePath()).value();
  store->write(
      [](Database& database) { writeSetting(database, "name", std::string(50'000, 'x')); });
  for (const auto* end : {"", "-wal"}) fs::copy_file(storePath() + end, path("half") + end);
  store.reset();
  // The file's first page alone has been moved, which says how many there are.
  const auto whole = contentOf(storePath());
  std::fstream(path("half"), std::ios::in | std::ios::out) << whole.substr(0, 4'096);
  ASSERT_LT(fs::file_size(path("half")), whole.size());
  Store::open(path("half")).value()->read([](Database& database) {
    EXPECT_EQ(readSetting(database, "name"), std::string(50'000, 'x'));
  });
}

TEST_F(StoreTest, IsReplacedByAnotherOneWholeOrNotAtAll) {
  const auto store = Store::open(storePath()).value();
  Store::open(path("other")).value()->write([](Database& database) {
    writeSetting(database, "name", "x");
  });
  const auto name = [&] {
    return store->read([](Database& database) { return readSetting(database, "name"); });
  };
  const auto fail = [](Database&) { throw std::logic_error("no"); };
  EXPECT_THROW(store->replaceBy(path("other"), {}, fail), std::logic_error);
  EXPECT_FALSE(name());
  store->replaceBy(path("other"), {});
  EXPECT_EQ(name(), "x");
}

TEST_F(StoreTest, PartsOfATransactionAreUndoneAlone) {
  const auto store = Store::open(storePath()).value();
  const auto put = [](const char* name) {
    return Store::Part{[name](Database& database) { writeSetting(database, name, "x"); }};
  };
  std::vector<Store::Part> parts{put("one"),
                                 {[&](Database& database) {
                                   put("two").body(database);
                                   throw std::logic_error("no");
                                 }},
                                 put("three")};
  store->writeTogether(parts);
  EXPECT_FALSE(parts[0].problem || parts[2].problem);
  EXPECT_THROW(std::rethrow_exception(parts[1].problem), std::logic_error);
  store->read([](Database& database) {
    EXPECT_TRUE(readSetting(database, "one") && readSetting(database, "three"));
    EXPECT_FALSE(readSetting(database, "two"));
  });
  const Store::Part full{[](Database& database) {
    database.run("PRAGMA max_page_count = 1");
    writeSetting(database, "big", std::string(200'000, 'x'));
  }};
  std::vector<Store::Part> undone{put("four"), full, put("five")};
  store->writeTogether(undone);
  EXPECT_TRUE(undone[0].problem && undone[1].problem && undone[2].problem);
  store->read([](Database& database) {
    EXPECT_FALSE(readSetting(database, "four") || readSetting(database, "five"));
  });
}

}  // namespace
}  // namespace hlv::sandbox
