#include "Sandbox/Faults/FaultTables.h"

#include <algorithm>
#include <cmath>

#include "Sandbox/Store/Identifiers.h"

namespace hlv::sandbox {
namespace {

constexpr std::int64_t firingsKept = 10'000;

constexpr const char* columns =
    "SELECT number, operation, kind, remaining, delay, code, use_case, spread, probability, "
    "distribution, status, headers, bytes, bytes_per_second FROM faults ";

/// A line each; names and values hold no control characters.
std::string joined(const std::vector<std::pair<std::string, std::string>>& headers) {
  std::string text;
  for (const auto& [name, value] : headers) text += name + ":" + value + "\n";
  return text;
}

std::vector<std::pair<std::string, std::string>> split(const std::string& text) {
  std::vector<std::pair<std::string, std::string>> headers;
  for (std::size_t at = 0; at < text.size();) {
    const auto colon = text.find(':', at);
    const auto end = text.find('\n', at);
    headers.emplace_back(text.substr(at, colon - at), text.substr(colon + 1, end - colon - 1));
    at = end + 1;
  }
  return headers;
}

Fault faultIn(const Query& row) {
  Fault fault;
  fault.number = row.integer(0);
  fault.operation = operationNamed(row.text(1)).valueOr(fault.operation);
  fault.kind = faultKindNamed(row.text(2)).valueOr(fault.kind);
  fault.remaining = row.integerOrNull(3);
  fault.delayMilliseconds = row.integer(4);
  fault.code = row.integer(5);
  fault.useCase = row.textOrNull(6);
  fault.spreadMilliseconds = row.integer(7);
  fault.probability = row.integer(8);
  fault.distribution = distributionNamed(row.text(9)).valueOr(fault.distribution);
  fault.status = row.integerOrNull(10);
  fault.headers = split(row.text(11));
  fault.bytes = row.integerOrNull(12);
  fault.bytesPerSecond = row.integerOrNull(13);
  return fault;
}

/// How long this call's reply waits.
std::int64_t chosenDelay(Database& database, const Fault& fault) {
  const auto delay = fault.delayMilliseconds;
  const auto spread = fault.spreadMilliseconds;
  if (spread == 0) return delay;
  if (fault.distribution == Distribution::uniform) {
    return delay + randomBelow(database, spread + 1);
  }
  const auto middle = static_cast<double>(delay);
  const auto width = static_cast<double>(spread);
  const auto chosen = fault.distribution == Distribution::normal
                          ? middle + width * randomNormal(database)
                          : middle * std::exp(std::log1p(width / middle) * randomNormal(database));
  constexpr double longest = 2.0 * 24 * 60 * 60 * 1000;
  return std::llround(std::clamp(chosen, 0.0, longest));
}

}  // namespace

std::vector<Fault> readFaults(Database& database) {
  return database.query(std::string(columns) + "ORDER BY number").all(faultIn);
}

std::optional<Fault> readFault(Database& database, std::int64_t number) {
  return database.query(std::string(columns) + "WHERE number = ?", number).one(faultIn);
}

std::vector<Firing> readFirings(Database& database) {
  return database.query("SELECT fault, operation, kind, number FROM firings ORDER BY number")
      .all([](const Query& row) {
        return Firing{row.integer(0), operationNamed(row.text(1)).valueOr(Operation{}),
                      faultKindNamed(row.text(2)).valueOr(FaultKind{}), row.integer(3)};
      });
}

std::int64_t insertFault(Database& database, const Fault& fault) {
  // A null number is the next one.
  std::optional<std::int64_t> number;
  if (fault.number != 0) number = fault.number;
  database.run(
      "INSERT INTO faults (number, operation, kind, remaining, delay, code, use_case, spread, "
      "probability, distribution, status, headers, bytes, bytes_per_second) "
      "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
      number, std::string(textOf(fault.operation)), std::string(textOf(fault.kind)),
      fault.remaining, fault.delayMilliseconds, fault.code, fault.useCase, fault.spreadMilliseconds,
      fault.probability, std::string(textOf(fault.distribution)), fault.status,
      joined(fault.headers), fault.bytes, fault.bytesPerSecond);
  return database.lastRow();
}

bool replaceFault(Database& database, const Fault& fault) {
  if (!removeFault(database, fault.number)) return false;
  insertFault(database, fault);
  return true;
}

bool removeFault(Database& database, std::int64_t number) {
  database.run("DELETE FROM faults WHERE number = ?", number);
  return database.changes() > 0;
}

void removeAllFaults(Database& database) { database.run("DELETE FROM faults"); }

bool mayMeetFault(Database& database, Operation operation) {
  return database.query("SELECT 1 FROM faults WHERE operation = ?", std::string(textOf(operation)))
      .next();
}

std::optional<Fault> takeFault(Database& database, Operation operation,
                               const std::optional<std::string>& useCase) {
  auto faults = database
                    .query(std::string(columns) +
                               "WHERE operation = ? AND (use_case IS NULL OR use_case = ?) "
                               "ORDER BY number",
                           std::string(textOf(operation)), useCase)
                    .all(faultIn);
  const auto found = std::find_if(faults.begin(), faults.end(), [&](const Fault& fault) {
    return fault.probability == 100 || randomBelow(database, 100) < fault.probability;
  });
  if (found == faults.end()) return std::nullopt;
  auto& fault = *found;
  fault.delayMilliseconds = chosenDelay(database, fault);
  if (fault.remaining) {
    --*fault.remaining;
    database.run("UPDATE faults SET remaining = ? WHERE number = ?", *fault.remaining,
                 fault.number);
    database.run("DELETE FROM faults WHERE remaining = 0");
  }
  database.run("INSERT INTO firings (fault, operation, kind) VALUES (?, ?, ?)", fault.number,
               std::string(textOf(fault.operation)), std::string(textOf(fault.kind)));
  database.run("DELETE FROM firings WHERE number <= ?", database.lastRow() - firingsKept);
  return fault;
}

}  // namespace hlv::sandbox
