#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {
namespace {

/// Does `work`, whose failures are those of the store.
template <class Work>
decltype(auto) checked(Work work) {
  try {
    return work();
  } catch (const SQLite::Exception& failure) {
    throw StoreFailure(failure);
  }
}

}  // namespace

// The messages of SQLite name tables and columns, never values.
StoreFailure::StoreFailure(const SQLite::Exception& failure)
    : std::runtime_error(std::string("The sandbox's store failed: ") + failure.what() + "."),
      code_(failure.getErrorCode()) {}

Query::~Query() {
  if (!statement_) return;
  try {
    statement_->reset();
  } catch (const SQLite::Exception&) {
    // Resetting repeats the failure of the last step, which was reported there.
  }
}

void Query::bind(int place, std::int64_t value) {
  checked([&] { statement_->bind(place, value); });
}

void Query::bind(int place, const std::string& value) {
  checked([&] { statement_->bind(place, value); });
}

void Query::bind(int place, const std::optional<std::string>& value) {
  checked([&] { value ? statement_->bind(place, *value) : statement_->bind(place); });
}

void Query::bind(int place, const std::optional<std::int64_t>& value) {
  checked([&] { value ? statement_->bind(place, *value) : statement_->bind(place); });
}

bool Query::next() {
  return checked([&] { return statement_->executeStep(); });
}

std::string Query::text(int column) const { return textOrNull(column).value_or(""); }

std::optional<std::string> Query::textOrNull(int column) const {
  const auto value = statement_->getColumn(column);
  return value.isNull() ? std::nullopt : std::optional(value.getString());
}

std::int64_t Query::integer(int column) const { return statement_->getColumn(column).getInt64(); }

std::optional<std::int64_t> Query::integerOrNull(int column) const {
  const auto value = statement_->getColumn(column);
  return value.isNull() ? std::nullopt : std::optional<std::int64_t>(value.getInt64());
}

Database::Database(const std::string& name, int flags)
    : connection_(checked([&] { return SQLite::Database(name, flags); })) {}

SQLite::Statement& Database::prepared(std::string_view sql) {
  const auto known = statements_.find(sql);
  if (known != statements_.end()) return known->second;
  return checked([&]() -> SQLite::Statement& {
    return statements_.emplace(sql, SQLite::Statement(connection_, std::string(sql))).first->second;
  });
}

void Database::runAll(const std::string& sql) {
  checked([&] { connection_.exec(sql); });
}

std::int64_t Database::integer(std::string_view sql) {
  auto row = query(sql);
  return row.next() ? row.integer(0) : 0;
}

std::int64_t Database::allChanges() {
  return connection_.getTotalChanges() + integer("PRAGMA data_version");
}

Transaction::Transaction(Database& database, Kind kind) : database_(database) {
  switch (kind) {
    case Kind::deferred:
      database_.run("BEGIN DEFERRED");
      break;
    case Kind::immediate:
      database_.run("BEGIN IMMEDIATE");
      break;
    case Kind::exclusive:
      database_.run("BEGIN EXCLUSIVE");
      break;
  }
}

Transaction::~Transaction() {
  if (!open_) return;
  try {
    database_.run("ROLLBACK");
  } catch (const StoreFailure&) {
    // A failed write may have rolled back by itself, and then there is nothing left to undo.
  }
}

void Transaction::commit() {
  database_.run("COMMIT");
  open_ = false;
}

Savepoint::Savepoint(Database& database) : database_(database) { database_.run("SAVEPOINT part"); }

Savepoint::~Savepoint() {
  if (!open_) return;
  try {
    database_.run("ROLLBACK TO part");
    database_.run("RELEASE part");
  } catch (const StoreFailure&) {
    // The whole transaction was rolled back.
  }
}

void Savepoint::keep() {
  database_.run("RELEASE part");
  open_ = false;
}

}  // namespace hlv::sandbox
