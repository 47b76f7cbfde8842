#include "Sandbox/Calls/Journal.h"

#include <pthread.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include "Platform/Platform.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {
namespace {

constexpr std::int64_t operationsKept = 200;
constexpr std::int64_t eventsKept = 5000;

std::string threadName() {
  if (Platform::current()->isMainThread()) return "main";
  std::array<char, 16> name{};
  pthread_getname_np(pthread_self(), name.data(), name.size());
  return name.data();
}

std::int64_t millisecondsNow() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

bool isKnown(Database& database, std::int64_t operation) {
  return database.query("SELECT 1 FROM operations WHERE number = ?", operation).next();
}

std::int64_t insertOperation(Database& database, const std::string& name) {
  database.run("INSERT INTO operations (name) VALUES (?)", maskedText(name));
  const auto number = database.lastRow();
  database.run("DELETE FROM operations WHERE number <= ?", number - operationsKept);
  return number;
}

Event readEvent(const Query& row) {
  return {row.integer(0), row.text(1), row.text(2),    row.text(3),
          row.text(4),    row.text(5), row.integer(6), row.integer(7)};
}

/// An operation for each row, a number and a name, with what it recorded after an event.
std::vector<Journal::Operation> operationsIn(Database& database, Query rows, std::int64_t after) {
  return rows.all([&](const Query& row) {
    const auto number = row.integer(0);
    auto events = database.query(
        "SELECT operation, speaker, listener, what, result, thread, number, at FROM events "
        "WHERE operation = ? AND number > ? ORDER BY number",
        number, after);
    return Journal::Operation{number, row.text(1), events.all(readEvent)};
  });
}

}  // namespace

Journal::Journal(std::shared_ptr<Store> store, std::string first)
    : store_(std::move(store)), first_(std::move(first)) {}

std::int64_t Journal::beginOperation(const std::string& name) {
  return operation_ =
             store_->record([&](Database& database) { return insertOperation(database, name); });
}

void Journal::joinOperation(const std::string& name) {
  store_->record([&](Database& database) {
    database.run("UPDATE operations SET name = name || ' + ' || ? WHERE number = ?",
                 maskedText(name), operation_.load());
  });
}

void Journal::record(const std::string& from, const std::string& to, const std::string& what,
                     const std::string& result) {
  const auto thread = threadName();
  const auto at = millisecondsNow();
  try {
    store_->record([&](Database& database) {
      // Another process may have forgotten this one's operation meanwhile.
      if (!isKnown(database, operation_)) operation_ = insertOperation(database, first_);
      database.run(
          "INSERT INTO events (operation, speaker, listener, what, result, thread, at) "
          "VALUES (?, ?, ?, ?, ?, ?, ?)",
          operation_.load(), from, to, maskedText(what), maskedText(result), thread, at);
      database.run("DELETE FROM events WHERE number <= ?", database.lastRow() - eventsKept);
    });
  } catch (const StoreFailure&) {
    // The timeline has no listener of its own. What cannot be recorded here fails loudly where the
    // same store has to take an operation's data.
  }
}

std::vector<Journal::Operation> Journal::last(std::size_t count) const {
  return store_->read([&](Database& database) {
    auto rows = database.query("SELECT number, name FROM operations ORDER BY number DESC LIMIT ?",
                               static_cast<std::int64_t>(count));
    auto operations = operationsIn(database, std::move(rows), 0);
    std::reverse(operations.begin(), operations.end());
    return operations;
  });
}

std::vector<Journal::Operation> Journal::since(std::int64_t event) const {
  return store_->read([&](Database& database) {
    auto rows = database.query(
        "SELECT number, name FROM operations WHERE number IN "
        "(SELECT operation FROM events WHERE number > ?) ORDER BY number",
        event);
    return operationsIn(database, std::move(rows), event);
  });
}

}  // namespace hlv::sandbox
