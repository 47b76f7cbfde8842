// SQLite, as the sandbox uses it. Private to the sandbox and the server.
//
// Threading: one thread at a time; `Store` sees to that.
#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Values/Problem.h"

namespace hlv::sandbox {

/// The store stopped working, or a file cannot be used as one.
class StoreFailure : public Problem {
 public:
  using Problem::Problem;
};

/// What is no store of this sandbox.
class NoStore : public StoreFailure {
 public:
  using StoreFailure::StoreFailure;
};

/// A statement with its values, and then row after row of its results. Leaves the statement ready
/// for the next use when it goes.
class Query {
 public:
  explicit Query(SQLite::Statement& statement) : statement_(&statement) {}
  Query(Query&& other) noexcept : statement_(std::exchange(other.statement_, nullptr)) {}
  ~Query();

  void bind(int place, std::int64_t value) { statement_->bind(place, value); }
  void bind(int place, const std::string& value) { statement_->bind(place, value); }
  void bind(int place, const std::optional<std::string>& value) {
    value ? statement_->bind(place, *value) : statement_->bind(place);
  }
  void bind(int place, const std::optional<std::int64_t>& value) {
    value ? statement_->bind(place, *value) : statement_->bind(place);
  }

  /// Goes to the next row; false when there is none.
  bool next() { return statement_->executeStep(); }

  std::string text(int column) const { return textOrNull(column).value_or(""); }
  std::optional<std::string> textOrNull(int column) const;
  std::int64_t integer(int column) const { return statement_->getColumn(column).getInt64(); }
  std::optional<std::int64_t> integerOrNull(int column) const;

  /// What `read(const Query&)` makes of each row that is left.
  template <class Read>
  auto all(Read read) {
    std::vector<std::invoke_result_t<Read, const Query&>> rows;
    while (next()) rows.push_back(read(*this));
    return rows;
  }
  /// The same of the next row; missing when there is none.
  template <class Read>
  auto one(Read read) {
    return next() ? std::optional(read(*this)) : std::nullopt;
  }

 private:
  SQLite::Statement* statement_;
};

/// One connection, which keeps its prepared statements. Members throw SQLite::Exception, which
/// `Store` turns into `StoreFailure`.
class Database {
 public:
  /// Opens an existing file. `flags` are SQLite's; `name` is a path or a URI.
  Database(const std::string& name, int flags) : connection_(name, flags) {}

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
  /// The first column of the first row; 0 when there is none.
  std::int64_t integer(std::string_view sql);
  /// The same; missing when there is none, or nothing in it.
  template <class... Values>
  std::optional<std::string> text(std::string_view sql, const Values&... values) {
    auto row = query(sql, values...);
    return row.next() ? row.textOrNull(0) : std::nullopt;
  }

  /// How many rows the last statement changed.
  int changes() const { return connection_.getChanges(); }
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

}  // namespace hlv::sandbox
