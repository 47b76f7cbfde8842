// SQLite, as the sandbox uses it. Private to the sandbox and the server.
//
// Threading: one thread at a time; `Store` sees to that.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace hlv::sandbox {

/// What the database refuses, in one plain sentence.
class StoreFailure : public std::runtime_error {
 public:
  explicit StoreFailure(const SQLite::Exception& failure);
  /// SQLite's result code.
  int code() const { return code_; }

 private:
  int code_;
};

/// A statement with its values, and then row after row of its results. Leaves the statement ready
/// for the next use when it goes.
class Query {
 public:
  explicit Query(SQLite::Statement& statement) : statement_(&statement) {}
  Query(Query&& other) noexcept : statement_(std::exchange(other.statement_, nullptr)) {}
  ~Query();

  void bind(int place, std::int64_t value);
  void bind(int place, const std::string& value);
  void bind(int place, const std::optional<std::string>& value);
  void bind(int place, const std::optional<std::int64_t>& value);

  /// Goes to the next row; false when there is none.
  bool next();

  std::string text(int column) const;
  std::optional<std::string> textOrNull(int column) const;
  std::int64_t integer(int column) const;
  std::optional<std::int64_t> integerOrNull(int column) const;

 private:
  SQLite::Statement* statement_;
};

/// One connection, which keeps its prepared statements. Every member throws `StoreFailure`.
class Database {
 public:
  /// Opens an existing file. `flags` are SQLite's; `name` is a path or a URI.
  Database(const std::string& name, int flags);

  /// The same text must not be in use by another `Query` of this connection.
  template <class... Values>
  [[nodiscard]] Query query(std::string_view sql, const Values&... values) {
    Query query(prepared(sql));
    int place = 0;
    (query.bind(++place, values), ...);
    return query;
  }

  template <class... Values>
  void run(std::string_view sql, const Values&... values) {
    auto rows = query(sql, values...);
    while (rows.next()) {
    }
  }

  /// Runs several statements, which are not kept.
  void runAll(const std::string& sql);
  std::int64_t integer(std::string_view sql);

  /// How many rows the last statement changed.
  int changes() const { return connection_.getChanges(); }
  /// Grows with every change of this connection and every transaction of another.
  std::int64_t allChanges();
  std::int64_t lastRow() const { return connection_.getLastInsertRowid(); }

  SQLite::Database& connection() { return connection_; }

 private:
  SQLite::Statement& prepared(std::string_view sql);

  SQLite::Database connection_;
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  std::unordered_map<std::string, SQLite::Statement, Hash, std::equal_to<>> statements_;
};

/// Rolls back unless it was committed.
class Transaction {
 public:
  /// As SQLite names them.
  enum class Kind { deferred, immediate, exclusive };
  explicit Transaction(Database& database, Kind kind = Kind::immediate);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit();

 private:
  Database& database_;
  bool open_ = true;
};

/// A part of a transaction, which is rolled back alone unless it was kept.
class Savepoint {
 public:
  explicit Savepoint(Database& database);
  ~Savepoint();
  Savepoint(const Savepoint&) = delete;
  Savepoint& operator=(const Savepoint&) = delete;

  void keep();

 private:
  Database& database_;
  bool open_ = true;
};

}  // namespace hlv::sandbox
