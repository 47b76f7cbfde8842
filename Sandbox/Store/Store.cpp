#include "Sandbox/Store/Store.h"

#include <SQLiteCpp/Savepoint.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "Sandbox/Store/Schema.h"

namespace hlv::sandbox {
namespace {

/// Idle connections for reading that a store keeps.
constexpr std::size_t idleReaders = 2;

std::string quoted(const std::string& path) { return "'" + path + "'"; }

[[noreturn]] void refuseFile(const std::string& path, const std::string& what) {
  throw NoStore("The store " + quoted(path) + " cannot be " + what + ": " +
                std::generic_category().message(errno) + ".");
}

/// Sees that there is a file, and returns whether it is empty. A file that it makes belongs to its
/// owner alone before a byte is in it; SQLite gives the files beside it the same rights.
bool prepareFile(const std::string& path) {
  const int created = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (created >= 0) {
    ::close(created);
    return true;
  }
  if (errno != EEXIST && errno != EISDIR) refuseFile(path, "created");
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) refuseFile(path, "opened");
  if (S_ISDIR(status.st_mode)) throw NoStore(quoted(path) + " is a directory, not a store.");
  if (!S_ISREG(status.st_mode)) throw NoStore(quoted(path) + " is not a file.");
  if (::access(path.c_str(), R_OK | W_OK) != 0) refuseFile(path, "read and written");
  // An empty file is what a process leaves that was killed while it made a store.
  if (status.st_size == 0) ::chmod(path.c_str(), 0600);
  return status.st_size == 0;
}

/// Checks a file by its first bytes, without a lock, a log or a byte written, so that another
/// program's database stays as it was. These bytes never lie in a store's write-ahead log alone:
/// they were written before the log was turned on, and they never change. All else in the file may
/// be half of what the log holds whole, where a process was killed while it moved that into the
/// file.
void requireStore(const std::string& path) {
  SQLite::Header header{};
  try {
    header = SQLite::Database::getHeaderInfo(path);
  } catch (const SQLite::Exception&) {
    throw NoStore(quoted(path) + " is not a store of this sandbox: it is no database.");
  }
  if (header.applicationId != applicationID) {
    throw NoStore(quoted(path) + " is not a store of this sandbox: it belongs to another program.");
  }
  if (header.userVersion != schemaVersion) {
    throw NoStore("The store " + quoted(path) + " has version " +
                  std::to_string(header.userVersion) + "; this sandbox reads version " +
                  std::to_string(schemaVersion) + ".");
  }
}

void requireTables(Database& database, const std::string& path) {
  if (database.integer("SELECT count(*) FROM sqlite_schema WHERE type = 'table'") > 0) return;
  throw NoStore("The store " + quoted(path) + " is damaged: its tables are gone.");
}

/// Returns whether it made the tables; another process may have been faster.
bool makeTables(Database& database) {
  SQLite::Transaction transaction(database.connection(), SQLite::TransactionBehavior::EXCLUSIVE);
  if (database.integer("PRAGMA application_id") != 0) return false;
  database.connection().exec(schema);
  database.run("PRAGMA application_id = " + std::to_string(applicationID));
  database.run("PRAGMA user_version = " + std::to_string(schemaVersion));
  transaction.commit();
  return true;
}

/// The bytes of a file that holds the same, in the mode with a write-ahead log.
std::string imageOf(Database& database) {
  sqlite3_int64 size = 0;
  const std::unique_ptr<unsigned char, decltype(&sqlite3_free)> bytes(
      sqlite3_serialize(database.connection().getHandle(), "main", &size, 0), &sqlite3_free);
  if (!bytes) throw SQLite::Exception("out of memory", SQLITE_NOMEM);
  std::string image(reinterpret_cast<const char*>(bytes.get()), static_cast<std::size_t>(size));
  // The versions that a reader and a writer need, as SQLite's file format has them.
  constexpr std::size_t versionPlaces[] = {18, 19};
  for (const auto place : versionPlaces) image.at(place) = 2;
  return image;
}

/// Makes a file, which only its owner can read, and returns whether its content and its name are on
/// disk; otherwise errno says why not.
bool writeDurably(const std::string& path, std::string_view content) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (file < 0) return false;
  bool isGood = true;
  while (isGood && !content.empty()) {
    const auto count = ::write(file, content.data(), content.size());
    isGood = count > 0;
    if (isGood) content.remove_prefix(static_cast<std::size_t>(count));
  }
  isGood = isGood && ::fsync(file) == 0;
  ::close(file);
  const auto folder = std::filesystem::path(path).parent_path().string();
  const int directory = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
  isGood = isGood && directory >= 0 && ::fsync(directory) == 0;
  if (directory >= 0) ::close(directory);
  return isGood;
}

/// Another store, as `source` beside a connection's `main`, for as long as the result is held.
std::shared_ptr<void> attached(Database& database, const std::string& path) {
  database.run("ATTACH ? AS source", path);
  return {nullptr, [&database](void*) {
            try {
              database.run("DETACH source");
            } catch (const SQLite::Exception&) {
              // Only a connection that is of no use any more keeps it.
            }
          }};
}

/// Prepares nothing that would outlive `source`.
void replaceTables(Database& database, std::span<const char* const> kept) {
  std::string keptNames = "''";
  for (const std::string name : kept) keptNames += ", '" + name + "'";
  std::vector<std::string> tables;
  {
    SQLite::Statement row(database.connection(),
                          "SELECT name FROM main.sqlite_schema WHERE type = 'table' "
                          "AND name NOT IN ('sqlite_sequence', " +
                              keptNames + ")");
    while (row.executeStep()) tables.push_back(row.getColumn(0).getString());
  }
  auto& connection = database.connection();
  connection.exec("PRAGMA defer_foreign_keys = ON");
  // All are empty before one is filled: what refers to a row may go with it.
  for (const auto& table : tables) connection.exec("DELETE FROM main." + table);
  for (const auto& table : tables) {
    connection.exec("INSERT INTO main." + table + " SELECT * FROM source." + table);
  }
  connection.exec("DELETE FROM main.sqlite_sequence WHERE name NOT IN (" + keptNames + ")");
  connection.exec(
      "INSERT INTO main.sqlite_sequence SELECT * FROM source.sqlite_sequence "
      "WHERE name NOT IN (" +
      keptNames + ")");
}

void prepareConnection(Database& database) {
  database.run("PRAGMA busy_timeout = 10000");
  database.run("PRAGMA foreign_keys = ON");
}

}  // namespace

// The messages of SQLite name tables and columns, never values.
StoreFailure Store::failureOf(const SQLite::Exception& failure) {
  return StoreFailure(std::string("The sandbox's store failed: ") + failure.what() + ".");
}

Result<std::shared_ptr<Store>> Store::open(const std::string& path) {
  using Opened = Result<std::shared_ptr<Store>>;
  try {
    if (!prepareFile(path)) requireStore(path);
    // Whatever the working directory becomes; and SQLite takes some relative names for URIs.
    const auto file = std::filesystem::absolute(path).string();
    auto database = std::make_unique<Database>(file, SQLite::OPEN_READWRITE);
    prepareConnection(*database);
    // What a process left that was killed while it made the tables is undone, and empty again.
    const bool isNew = database->integer("PRAGMA application_id") == 0 && makeTables(*database);
    requireTables(*database, path);
    database->run("PRAGMA journal_mode = WAL");
    database->run("PRAGMA synchronous = FULL");
    return std::make_shared<Store>(file, std::move(database), isNew);
  } catch (const NoStore& unusable) {
    return Opened::failure(unusable.what());
  } catch (const SQLite::Exception& failure) {
    return Opened::failure("The store " + quoted(path) + " cannot be used. " +
                           failureOf(failure).what());
  }
}

std::shared_ptr<Store> Store::openInMemory() {
  return checked([] {
    auto database = std::make_unique<Database>(":memory:", SQLite::OPEN_READWRITE);
    prepareConnection(*database);
    makeTables(*database);
    return std::make_shared<Store>("", std::move(database), true);
  });
}

void Store::writeTogether(std::span<Part> parts) {
  try {
    const Lock lock(writing_);
    SQLite::Transaction transaction(writer_->connection(), Behavior::IMMEDIATE);
    for (auto& part : parts) {
      try {
        SQLite::Savepoint savepoint(writer_->connection(), "part");
        part.body(*writer_);
        savepoint.release();
      } catch (const SQLite::Exception& failure) {
        // Some failures, such as a full disk, end the transaction, and what follows would be alone.
        if (sqlite3_get_autocommit(writer_->connection().getHandle()) != 0) throw;
        part.problem = std::make_exception_ptr(failureOf(failure));
      } catch (...) {
        part.problem = std::current_exception();
      }
    }
    transaction.commit();
  } catch (const SQLite::Exception& failure) {
    for (auto& part : parts) part.problem = std::make_exception_ptr(failureOf(failure));
  }
}

std::int64_t Store::changes() {
  return checked([this] {
    if (path_.empty()) {
      const Lock lock(writing_);
      return writer_->connection().getTotalChanges() + writer_->integer("PRAGMA data_version");
    }
    // A connection that changes nothing itself sees every change as another's.
    const Lock lock(watching_);
    if (!watcher_) {
      watcher_ = std::make_unique<Database>(path_, SQLite::OPEN_READWRITE);
      prepareConnection(*watcher_);
    }
    return watcher_->integer("PRAGMA data_version");
  });
}

void Store::copyTo(const std::string& path) {
  const auto image = checked([this] {
    const Lock lock(writing_);
    return imageOf(*writer_);
  });
  if (writeDurably(path, image)) return;
  const int reason = errno;
  if (reason != EEXIST) ::unlink(path.c_str());
  throw StoreFailure("The sandbox's store failed: a copy cannot be written: " +
                     std::generic_category().message(reason) + ".");
}

void Store::replaceBy(const std::string& path, std::span<const char* const> kept,
                      const std::function<void(Database&)>& then) {
  requireStore(path);
  checked([&] {
    const Lock lock(writing_);
    const auto source = attached(*writer_, path);
    const auto replace = [&](Database& database) {
      replaceTables(database, kept);
      if (then) then(database);
    };
    transact(*writer_, Behavior::IMMEDIATE, replace);
  });
}

Store::Reader::Reader(Store& owner) : store(owner) {
  {
    const Lock lock(store.readersMutex_);
    if (!store.readers_.empty()) {
      connection = std::move(store.readers_.back());
      store.readers_.pop_back();
    }
  }
  if (connection) return;
  checked([this] {
    connection = std::make_unique<ReadConnection>(store.path_);
    prepareConnection(connection->database);
    connection->database.run("PRAGMA query_only = ON");
  });
}

Store::Reader::~Reader() {
  const Lock lock(store.readersMutex_);
  if (store.readers_.size() < idleReaders) store.readers_.push_back(std::move(connection));
}

std::any& Store::ReadConnection::remembered(const std::string& key) {
  constexpr std::size_t most = 256;
  const auto now = database.integer("PRAGMA data_version");
  if (now != version || results.size() >= most) results.clear();
  version = now;
  return results[key];
}

std::shared_ptr<void> Store::withoutSync(Database& writer) {
  checked([&] { writer.run("PRAGMA synchronous = NORMAL"); });
  return {nullptr, [&writer](void*) {
            try {
              writer.run("PRAGMA synchronous = FULL");
            } catch (const SQLite::Exception&) {
              // Only a connection that is of no use any more refuses a setting.
            }
          }};
}

}  // namespace hlv::sandbox
