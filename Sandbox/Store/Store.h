// The one file that holds everything a sandbox remembers. Private to the sandbox and the server.
#pragma once

#include <any>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Sandbox/Store/Database.h"
#include "Values/Mutex.h"
#include "Values/Result.h"

namespace hlv::sandbox {

/// Several processes may use one file at once. There is one writer at a time, and readers wait for
/// nobody: each sees what was committed when it began.
///
/// Threading: any. A body must not come back to its own store.
class Store {
 public:
  /// Opens a store, or makes one where there is no file, or an empty one. A file that cannot be
  /// used is left as it is.
  static Result<std::shared_ptr<Store>> open(const std::string& path);
  /// A new store that goes with this object.
  [[nodiscard]] static std::shared_ptr<Store> openInMemory();

  /// `path` is empty for a store in memory.
  Store(std::string path, std::unique_ptr<Database> writer, bool isNew)
      : path_(std::move(path)), isNew_(isNew), writer_(std::move(writer)) {}

  /// Whether this object has made the store.
  bool isNew() const { return isNew_; }

  /// Runs `body(Database&)` in one transaction, which is on disk before this returns, or not at all
  /// when the body throws.
  template <class Body>
  auto write(Body body) {
    const Lock lock(writing_);
    return transact(*writer_, Behavior::IMMEDIATE, body);
  }

  /// The same for what only records a conversation: it outlives the process at once, and a failure
  /// of power only when a later `write` has returned. So it costs no wait for the disk.
  template <class Body>
  auto record(Body body) {
    const Lock lock(writing_);
    const auto unsynced = withoutSync(*writer_);
    return transact(*writer_, Behavior::IMMEDIATE, body);
  }

  /// One caller's part of a transaction.
  struct Part {
    std::function<void(Database&)> body;
    /// What the body threw, or what kept the transaction from the disk; null when it is there.
    std::exception_ptr problem = {};
  };
  /// Runs all of the bodies in one transaction. A body that throws is undone alone.
  void writeTogether(std::span<Part> parts);

  /// Runs `body(Database&)`, which changes nothing, on one state of the store.
  template <class Body>
  auto read(Body body) {
    if (path_.empty()) return write(std::move(body));
    const Reader reader(*this);
    return transact(reader.connection->database, Behavior::DEFERRED, body);
  }

  /// The same, but what a body returned for this key on the same state of the store is returned
  /// again. The result is optional; a missing one is not remembered.
  template <class Body>
  auto readAgain(const std::string& key, Body body) {
    using Found = std::invoke_result_t<Body, Database&>;
    if (path_.empty()) return write(std::move(body));
    const Reader reader(*this);
    const auto remembering = [&](Database& database) -> Found {
      auto& known = reader.connection->remembered(key);
      if (const auto* result = std::any_cast<Found>(&known)) return *result;
      auto result = body(database);
      if (result) known = result;
      return result;
    };
    return transact(reader.connection->database, Behavior::DEFERRED, remembering);
  }

  /// For readers that have no way to report a failure: returns the zero of the result.
  template <class Body>
  auto readOrNothing(Body body) {
    try {
      return read(std::move(body));
    } catch (const StoreFailure&) {
      return std::invoke_result_t<Body, Database&>();
    }
  }

  /// Another number whenever this process or another has changed something. Waits for no writer.
  std::int64_t changes();

  /// Writes everything into a new file, which only its owner can read and which is on disk then.
  /// Throws when there is a file.
  void copyTo(const std::string& path);
  /// Replaces all tables but the `kept` ones by those of another store's file, and runs `then` in
  /// the same transaction. Throws `NoStore`.
  void replaceBy(const std::string& path, std::span<const char* const> kept,
                 const std::function<void(Database&)>& then = nullptr);

 private:
  using Behavior = SQLite::TransactionBehavior;

  /// A connection for reading, with what was read on one state of the store.
  struct ReadConnection {
    explicit ReadConnection(const std::string& path) : database(path, SQLite::OPEN_READWRITE) {}
    /// Empty for what was not read on the present state. Inside a transaction.
    std::any& remembered(const std::string& key);
    Database database;
    std::int64_t version = -1;
    std::unordered_map<std::string, std::any> results;
  };
  /// One that goes back to the others afterwards.
  struct Reader {
    explicit Reader(Store& owner);
    ~Reader();
    Store& store;
    std::unique_ptr<ReadConnection> connection;
  };
  /// While the result is held, commits do not wait for the disk.
  static std::shared_ptr<void> withoutSync(Database& writer);

  /// Does `work`, in which a failure of SQLite is one of the store.
  template <class Work>
  static auto checked(Work work) {
    try {
      return work();
    } catch (const SQLite::Exception& failure) {
      throw failureOf(failure);
    }
  }
  static StoreFailure failureOf(const SQLite::Exception& failure);

  template <class Body>
  static auto transact(Database& database, Behavior behavior, Body& body) {
    return checked([&] {
      SQLite::Transaction transaction(database.connection(), behavior);
      if constexpr (std::is_void_v<std::invoke_result_t<Body&, Database&>>) {
        body(database);
        transaction.commit();
      } else {
        auto result = body(database);
        transaction.commit();
        return result;
      }
    });
  }

  const std::string path_;
  const bool isNew_;
  Mutex writing_;
  const std::unique_ptr<Database> writer_ HLV_POINTEE_GUARDED_BY(writing_);
  Mutex watching_;
  /// Null until it is needed.
  std::unique_ptr<Database> watcher_ HLV_GUARDED_BY(watching_);
  Mutex readersMutex_;
  std::vector<std::unique_ptr<ReadConnection>> readers_ HLV_GUARDED_BY(readersMutex_);
};

}  // namespace hlv::sandbox
