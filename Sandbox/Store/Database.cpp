#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

Query::~Query() {
  if (!statement_) return;
  try {
    statement_->reset();
  } catch (const SQLite::Exception&) {
    // Resetting repeats the failure of the last step, which was reported there.
  }
}

std::optional<std::string> Query::textOrNull(int column) const {
  const auto value = statement_->getColumn(column);
  return value.isNull() ? std::nullopt : std::optional(value.getString());
}

std::optional<std::int64_t> Query::integerOrNull(int column) const {
  const auto value = statement_->getColumn(column);
  return value.isNull() ? std::nullopt : std::optional<std::int64_t>(value.getInt64());
}

SQLite::Statement& Database::prepared(std::string_view sql) {
  const auto known = statements_.find(sql);
  if (known != statements_.end()) return known->second;
  return statements_.emplace(sql, SQLite::Statement(connection_, std::string(sql))).first->second;
}

std::int64_t Database::integer(std::string_view sql) {
  auto row = query(sql);
  return row.next() ? row.integer(0) : 0;
}

}  // namespace hlv::sandbox
