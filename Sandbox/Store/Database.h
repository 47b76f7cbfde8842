// SQLite, as the sandbox speaks to it. Private to the sandbox.
//
// Threading: one thread at a time; `Store` sees to that.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace hlv::sandbox {

/// What the database refuses, in one plain sentence.
class StoreFailure : public std::runtime_error {
 public:
  StoreFailure(int code, const std::string& sentence) : std::runtime_error(sentence), code_(code) {}
  /// SQLite's result code.
  int code() const { return code_; }

 private:
  int code_;
};

/// A statement with its values, and then row after row of its results.
class Statement {
 public:
  Statement(sqlite3* connection, std::string_view sql);

  void bind(std::int64_t value);
  void bind(const std::string& value);
  void bind(const std::optional<std::string>& value);
  void bind(const std::optional<std::int64_t>& value);

  /// Goes to the next row; false when there is none.
  bool next();

  std::string text(int column) const;
  std::optional<std::string> textOrNull(int column) const;
  std::int64_t integer(int column) const;
  std::optional<std::int64_t> integerOrNull(int column) const;

 private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  sqlite3* connection_;
  std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
  int bound_ = 0;
};

/// One connection. Every member throws `StoreFailure`.
class Database {
 public:
  /// Opens an existing file. `flags` are SQLite's; `name` is a path or a URI.
  Database(const std::string& name, int flags);

  template <class... Values>
  Statement query(std::string_view sql, const Values&... values) {
    Statement statement(connection_.get(), sql);
    (statement.bind(values), ...);
    return statement;
  }

  template <class... Values>
  void run(std::string_view sql, const Values&... values) {
    auto statement = query(sql, values...);
    while (statement.next()) {
    }
  }

  /// Runs several statements.
  void runAll(const char* sql);
  std::int64_t integer(std::string_view sql);

  /// How many rows the last statement changed.
  int changes() const { return sqlite3_changes(connection_.get()); }
  /// Grows with every change of this connection and every transaction of another.
  std::int64_t allChanges() {
    return sqlite3_total_changes64(connection_.get()) + integer("PRAGMA data_version");
  }
  bool isInTransaction() const { return sqlite3_get_autocommit(connection_.get()) == 0; }
  std::int64_t lastRow() const { return sqlite3_last_insert_rowid(connection_.get()); }

 private:
  struct Closer {
    void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
  };

  std::unique_ptr<sqlite3, Closer> connection_;
};

/// Rolls back unless it was committed. One within another is a part of it, and is rolled back
/// alone.
class Transaction {
 public:
  /// `kind` is "IMMEDIATE" or "EXCLUSIVE"; the outermost decides.
  explicit Transaction(Database& database, const std::string& kind = "IMMEDIATE");
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  void commit();

 private:
  Database& database_;
  const bool isWithin_;
  bool open_ = true;
};

}  // namespace hlv::sandbox
