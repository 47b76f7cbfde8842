#include "Sandbox/Store/Store.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "Sandbox/Store/Schema.h"

namespace hlv::sandbox {
namespace {

/// A problem as the person at the console reads it.
struct Unusable {
  std::string sentence;
};

std::string quoted(const std::string& path) { return "'" + path + "'"; }

/// Sees that there is a file, and answers whether it is empty. A file that it makes belongs to its
/// owner alone before a byte is in it; SQLite gives the files beside it the same rights.
bool prepareFile(const std::string& path) {
  const int created = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (created >= 0) {
    ::close(created);
    return true;
  }
  if (errno != EEXIST && errno != EISDIR) {
    throw Unusable{"The store " + quoted(path) +
                   " cannot be created: " + std::generic_category().message(errno) + "."};
  }
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    throw Unusable{"The store " + quoted(path) +
                   " cannot be opened: " + std::generic_category().message(errno) + "."};
  }
  if (S_ISDIR(status.st_mode)) throw Unusable{quoted(path) + " is a directory, not a store."};
  if (!S_ISREG(status.st_mode)) throw Unusable{quoted(path) + " is not a file."};
  if (::access(path.c_str(), R_OK | W_OK) != 0) {
    throw Unusable{"The store " + quoted(path) +
                   " cannot be read and written: " + std::generic_category().message(errno) + "."};
  }
  // An empty file is what a process leaves that was killed while it made a store.
  if (status.st_size == 0) ::chmod(path.c_str(), 0600);
  return status.st_size == 0;
}

std::string uriOf(const std::string& path) {
  std::string uri = "file:";
  for (const char character : path) {
    switch (character) {
      case '%':
        uri += "%25";
        break;
      case '?':
        uri += "%3f";
        break;
      case '#':
        uri += "%23";
        break;
      default:
        uri += character;
    }
  }
  return uri;
}

/// Checks a file without a lock, a log or a byte written, so that another program's database stays
/// as it was. What is read here never lies in a store's write-ahead log alone: it was written
/// before the log was turned on, and it never changes.
void requireStore(const std::string& path) {
  std::int64_t application = 0;
  std::int64_t version = 0;
  bool hasTables = false;
  try {
    Database database(uriOf(path) + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    application = database.integer("PRAGMA application_id");
    version = database.integer("PRAGMA user_version");
    hasTables = database.integer("SELECT count(*) FROM sqlite_schema WHERE type = 'table'") > 0;
  } catch (const StoreFailure&) {
    throw Unusable{quoted(path) + " is not a store of this sandbox: it is no database."};
  }
  if (application != applicationID) {
    throw Unusable{quoted(path) +
                   " is not a store of this sandbox: it belongs to another program."};
  }
  if (version != schemaVersion) {
    throw Unusable{"The store " + quoted(path) + " has version " + std::to_string(version) +
                   "; this sandbox reads version " + std::to_string(schemaVersion) + "."};
  }
  if (!hasTables) throw Unusable{"The store " + quoted(path) + " is damaged: its tables are gone."};
}

/// Answers whether it made the tables; another process may have been faster.
bool makeTables(Database& database) {
  Transaction transaction(database, "EXCLUSIVE");
  if (database.integer("PRAGMA application_id") != 0) return false;
  database.runAll(schema);
  database.run("PRAGMA application_id = " + std::to_string(applicationID));
  database.run("PRAGMA user_version = " + std::to_string(schemaVersion));
  transaction.commit();
  return true;
}

}  // namespace

Store::Opened Store::open(const std::string& path) {
  try {
    const bool isEmpty = prepareFile(path);
    if (!isEmpty) requireStore(path);
    auto database = std::make_unique<Database>(path, SQLITE_OPEN_READWRITE);
    database->run("PRAGMA busy_timeout = 10000");
    database->run("PRAGMA foreign_keys = ON");
    const bool isNew = isEmpty && makeTables(*database);
    database->run("PRAGMA journal_mode = WAL");
    database->run("PRAGMA synchronous = FULL");
    database->integer("SELECT count(*) FROM settings");
    return {std::make_shared<Store>(std::move(database)), "", isNew};
  } catch (const Unusable& unusable) {
    return {nullptr, unusable.sentence};
  } catch (const StoreFailure& failure) {
    return {nullptr, "The store " + quoted(path) + " cannot be used. " + failure.what()};
  }
}

}  // namespace hlv::sandbox
