#include "Sandbox/Journal.h"

#include <pthread.h>

#include <algorithm>
#include <array>
#include <utility>

#include "Platform/Platform.h"
#include "Sandbox/Logging/MaskedText.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {
namespace {

constexpr std::int64_t operationsKept = 200;

std::string threadName() {
  if (Platform::current()->isMainThread()) return "main";
  std::array<char, 16> name{};
  pthread_getname_np(pthread_self(), name.data(), name.size());
  return name.data();
}

std::int64_t insertOperation(Database& database, const std::string& name) {
  database.run("INSERT INTO operations (name) VALUES (?)", maskedText(name));
  const auto number = database.lastRow();
  database.run("DELETE FROM operations WHERE number <= ?", number - operationsKept);
  return number;
}

std::vector<Event> eventsOf(Database& database, std::int64_t operation) {
  std::vector<Event> events;
  auto row = database.query(
      "SELECT operation, speaker, listener, what, result, thread FROM events "
      "WHERE operation = ? ORDER BY number",
      operation);
  while (row.next()) {
    events.push_back(
        {row.integer(0), row.text(1), row.text(2), row.text(3), row.text(4), row.text(5)});
  }
  return events;
}

}  // namespace

Journal::Journal(std::shared_ptr<Store> store) : store_(std::move(store)) {}

void Journal::beginOperation(const std::string& name) {
  operation_ = store_->write([&](Database& database) { return insertOperation(database, name); });
}

void Journal::record(const std::string& from, const std::string& to, const std::string& what,
                     const std::string& result) {
  const auto thread = threadName();
  try {
    store_->write([&](Database& database) {
      // Another process may have forgotten this one's operation meanwhile.
      auto known = database.query("SELECT 1 FROM operations WHERE number = ?", operation_.load());
      if (!known.next()) operation_ = insertOperation(database, "start");
      database.run(
          "INSERT INTO events (operation, speaker, listener, what, result, thread) "
          "VALUES (?, ?, ?, ?, ?, ?)",
          operation_.load(), from, to, maskedText(what), maskedText(result), thread);
    });
  } catch (const StoreFailure&) {
    // The story has no listener of its own. What cannot be told here fails loudly where the same
    // store has to take an operation's data.
  }
}

std::vector<Journal::Operation> Journal::last(std::size_t count) const {
  return store_->read([&](Database& database) {
    std::vector<Operation> operations;
    auto row = database.query("SELECT number, name FROM operations ORDER BY number DESC LIMIT ?",
                              static_cast<std::int64_t>(count));
    while (row.next()) {
      operations.push_back({row.integer(0), row.text(1), eventsOf(database, row.integer(0))});
    }
    std::reverse(operations.begin(), operations.end());
    return operations;
  });
}

}  // namespace hlv::sandbox
