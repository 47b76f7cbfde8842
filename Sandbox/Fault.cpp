#include "Sandbox/Fault.h"

#include <algorithm>
#include <utility>

#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Logging/MaskedText.h"
#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {
namespace {

/// What one operation can be made to do.
struct Possible {
  std::string operation;
  bool hasUseCase;
  /// Beyond what every operation can.
  std::vector<std::string> kinds;
};

std::vector<Possible> possibilities() {
  return {
      {"updateCurrentGuestWithRequest", false, {}},
      {"addCreditCardForGuest", true, {}},
      {"deleteCreditCardWithID", false, {}},
      {"updateCreditCard", false, {}},
      {"fetchGuestCreditCards", false, {"no-list"}},
      {"createUserToken", true, {"no-token", "no-identifier", "other-state"}},
      {"addPaymentInstrument", true, {"no-identifier", "other-state"}},
      {"getPaymentInstrumentsList", true, {"no-list", "no-identifier", "other-state"}},
      {"removePaymentInstrument", true, {}},
  };
}

std::vector<std::string> kindsOfAll() {
  return {"error", "delay", "refused", "reset", "garbage", "never", "twice"};
}

bool contains(const std::vector<std::string>& list, const std::string& text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

std::string listed(const std::vector<std::string>& list) {
  std::string text;
  for (const auto& item : list) text += (text.empty() ? "" : ", ") + item;
  return text;
}

std::vector<std::string> kindsOf(const Possible& possible) {
  auto kinds = kindsOfAll();
  kinds.insert(kinds.end(), possible.kinds.begin(), possible.kinds.end());
  return kinds;
}

/// One plain sentence about what is wrong with a fault, or an empty string.
std::string problemOf(const Fault& fault) {
  const auto all = possibilities();
  const auto possible = std::find_if(all.begin(), all.end(), [&](const Possible& candidate) {
    return candidate.operation == fault.operation;
  });
  if (possible == all.end()) {
    return "There is no operation '" + maskedText(fault.operation) +
           "'; possible are: " + listed(Faults::operations()) + ".";
  }
  if (!contains(kindsOf(*possible), fault.kind)) {
    return "The fault '" + maskedText(fault.kind) + "' makes no sense for " + fault.operation +
           "; possible are: " + listed(kindsOf(*possible)) + ".";
  }
  if (fault.useCase && !possible->hasUseCase) {
    return "Calls of " + fault.operation + " have no use case.";
  }
  if (fault.useCase && !isUseCase(*fault.useCase)) return unknownUseCase().sentence;
  if (fault.remaining && *fault.remaining < 1) return "A fault must meet at least one call.";
  constexpr std::int64_t longestDelay = 24LL * 60 * 60 * 1000;
  if (fault.delayMilliseconds < 0 || fault.delayMilliseconds > longestDelay) {
    return "A delay lies between 0 and " + std::to_string(longestDelay) + " milliseconds.";
  }
  if (fault.spreadMilliseconds < 0 || fault.spreadMilliseconds > longestDelay) {
    return "A delay spreads by 0 to " + std::to_string(longestDelay) + " milliseconds.";
  }
  if (fault.kind == "delay" && fault.delayMilliseconds + fault.spreadMilliseconds == 0) {
    return "A delay needs its milliseconds.";
  }
  if (fault.probability < 1 || fault.probability > 100) {
    return "A probability lies between 1 and 100 in a hundred.";
  }
  return "";
}

constexpr const char* faultColumns =
    "SELECT number, operation, kind, remaining, delay, code, use_case, spread, probability "
    "FROM faults ";

Fault readFault(const Statement& row) {
  Fault fault;
  fault.number = row.integer(0);
  fault.operation = row.text(1);
  fault.kind = row.text(2);
  fault.remaining = row.integerOrNull(3);
  fault.delayMilliseconds = row.integer(4);
  fault.code = row.integer(5);
  fault.useCase = row.textOrNull(6);
  fault.spreadMilliseconds = row.integer(7);
  fault.probability = row.integer(8);
  return fault;
}

std::vector<Fault> faultsFor(Database& database, const std::string& operation,
                             const std::optional<std::string>& useCase) {
  std::vector<Fault> faults;
  auto row = database.query(std::string(faultColumns) +
                                "WHERE operation = ? AND (use_case IS NULL OR use_case = ?) "
                                "ORDER BY number",
                            operation, useCase);
  while (row.next()) faults.push_back(readFault(row));
  return faults;
}

/// The first that the dice do not spare the call.
std::optional<Fault> chosen(Database& database, std::vector<Fault> faults) {
  for (auto& fault : faults) {
    if (fault.probability < 100 && throwDice(database, 100) >= fault.probability) continue;
    if (fault.spreadMilliseconds > 0) {
      fault.delayMilliseconds += throwDice(database, fault.spreadMilliseconds + 1);
    }
    return fault;
  }
  return std::nullopt;
}

}  // namespace

Faults::Faults(std::shared_ptr<Store> store) : store_(std::move(store)) {}

std::vector<std::string> Faults::operations() {
  std::vector<std::string> names;
  for (const auto& possible : possibilities()) names.push_back(possible.operation);
  return names;
}

std::vector<std::string> Faults::kinds() {
  auto kinds = kindsOfAll();
  for (const auto& possible : possibilities()) {
    for (const auto& kind : possible.kinds) {
      if (!contains(kinds, kind)) kinds.push_back(kind);
    }
  }
  return kinds;
}

std::string Faults::arm(const Fault& fault) {
  auto problem = problemOf(fault);
  if (!problem.empty()) return problem;
  try {
    store_->write([&](Database& database) {
      database.run(
          "INSERT INTO faults (operation, kind, remaining, delay, code, use_case, spread, "
          "probability) VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
          fault.operation, fault.kind, fault.remaining, fault.delayMilliseconds, fault.code,
          fault.useCase, fault.spreadMilliseconds, fault.probability);
    });
  } catch (const StoreFailure& failure) {
    return failure.what();
  }
  return "";
}

std::vector<Fault> Faults::armed() const {
  return store_->read([](Database& database) {
    std::vector<Fault> faults;
    auto row = database.query(std::string(faultColumns) + "ORDER BY number");
    while (row.next()) faults.push_back(readFault(row));
    return faults;
  });
}

void Faults::clear() {
  store_->write([](Database& database) { database.run("DELETE FROM faults"); });
}

std::vector<Firing> Faults::firings() const {
  return store_->read([](Database& database) {
    std::vector<Firing> firings;
    auto row = database.query("SELECT fault, operation, kind FROM firings ORDER BY number");
    while (row.next()) firings.push_back({row.integer(0), row.text(1), row.text(2)});
    return firings;
  });
}

std::optional<Fault> Faults::take(const std::string& operation,
                                  const std::optional<std::string>& useCase) {
  return store_->write([&](Database& database) {
    auto fault = chosen(database, faultsFor(database, operation, useCase));
    if (!fault) return fault;
    if (fault->remaining) {
      --*fault->remaining;
      database.run("UPDATE faults SET remaining = ? WHERE number = ?", *fault->remaining,
                   fault->number);
      database.run("DELETE FROM faults WHERE remaining = 0");
    }
    database.run("INSERT INTO firings (fault, operation, kind) VALUES (?, ?, ?)", fault->number,
                 fault->operation, fault->kind);
    return fault;
  });
}

}  // namespace hlv::sandbox
