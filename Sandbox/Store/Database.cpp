#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {
namespace {

// The messages of SQLite name tables and columns, never values.
[[noreturn]] void fail(sqlite3* connection) {
  const int code = connection ? sqlite3_errcode(connection) : SQLITE_NOMEM;
  const char* reason = connection ? sqlite3_errmsg(connection) : "out of memory";
  throw StoreFailure(code, std::string("The sandbox's store failed: ") + reason + ".");
}

}  // namespace

Statement::Statement(sqlite3* connection, std::string_view sql) : connection_(connection) {
  sqlite3_stmt* statement = nullptr;
  const int code =
      sqlite3_prepare_v2(connection, sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
  if (code != SQLITE_OK) fail(connection);
  statement_.reset(statement);
}

void Statement::bind(std::int64_t value) {
  if (sqlite3_bind_int64(statement_.get(), ++bound_, value) != SQLITE_OK) fail(connection_);
}

void Statement::bind(const std::string& value) {
  const int code = sqlite3_bind_text(statement_.get(), ++bound_, value.data(),
                                     static_cast<int>(value.size()), SQLITE_TRANSIENT);
  if (code != SQLITE_OK) fail(connection_);
}

void Statement::bind(const std::optional<std::string>& value) {
  if (value) return bind(*value);
  if (sqlite3_bind_null(statement_.get(), ++bound_) != SQLITE_OK) fail(connection_);
}

void Statement::bind(const std::optional<std::int64_t>& value) {
  if (value) return bind(*value);
  if (sqlite3_bind_null(statement_.get(), ++bound_) != SQLITE_OK) fail(connection_);
}

bool Statement::next() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) fail(connection_);
  return false;
}

std::string Statement::text(int column) const { return textOrNull(column).value_or(""); }

std::optional<std::string> Statement::textOrNull(int column) const {
  const auto* bytes = sqlite3_column_text(statement_.get(), column);
  if (!bytes) return std::nullopt;
  const auto size = sqlite3_column_bytes(statement_.get(), column);
  return std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

std::int64_t Statement::integer(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

std::optional<std::int64_t> Statement::integerOrNull(int column) const {
  if (sqlite3_column_type(statement_.get(), column) == SQLITE_NULL) return std::nullopt;
  return integer(column);
}

Database::Database(const std::string& name, int flags) {
  sqlite3* connection = nullptr;
  const int code = sqlite3_open_v2(name.c_str(), &connection, flags, nullptr);
  connection_.reset(connection);
  if (code != SQLITE_OK) fail(connection);
}

void Database::runAll(const char* sql) {
  if (sqlite3_exec(connection_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
    fail(connection_.get());
  }
}

std::int64_t Database::integer(std::string_view sql) {
  auto statement = query(sql);
  return statement.next() ? statement.integer(0) : 0;
}

Transaction::Transaction(Database& database, const std::string& kind)
    : database_(database), isWithin_(database.isInTransaction()) {
  database_.run(isWithin_ ? "SAVEPOINT part" : "BEGIN " + kind);
}

Transaction::~Transaction() {
  if (!open_) return;
  try {
    if (isWithin_) {
      database_.runAll("ROLLBACK TO part; RELEASE part");
    } else {
      database_.run("ROLLBACK");
    }
  } catch (const StoreFailure&) {
    // A failed write may have rolled back by itself, and then there is nothing left to undo.
  }
}

void Transaction::commit() {
  database_.run(isWithin_ ? "RELEASE part" : "COMMIT");
  open_ = false;
}

}  // namespace hlv::sandbox
