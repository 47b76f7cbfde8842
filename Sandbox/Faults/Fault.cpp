#include "Sandbox/Faults/Fault.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Faults/FaultTables.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Sandbox/Store/Store.h"

namespace hlv::sandbox {
namespace {

struct PossibleOperation {
  Operation operation;
  std::string_view name;
  bool hasUseCase;
  /// Beyond those that suit every operation.
  std::array<FaultKind, 3> kinds;
  std::size_t kindCount;
};

constexpr PossibleOperation possibleOperations[] = {
    {Operation::updateGuest, "updateCurrentGuestWithRequest", false, {}, 0},
    {Operation::addCard, "addCreditCardForGuest", true, {}, 0},
    {Operation::deleteCard, "deleteCreditCardWithID", false, {}, 0},
    {Operation::updateCard, "updateCreditCard", false, {}, 0},
    {Operation::fetchCards, "fetchGuestCreditCards", false, {FaultKind::noList}, 1},
    {Operation::createUserToken,
     "createUserToken",
     true,
     {FaultKind::noToken, FaultKind::noIdentifier, FaultKind::otherState},
     3},
    {Operation::addInstrument,
     "addPaymentInstrument",
     true,
     {FaultKind::noIdentifier, FaultKind::otherState},
     2},
    {Operation::listInstruments,
     "getPaymentInstrumentsList",
     true,
     {FaultKind::noList, FaultKind::noIdentifier, FaultKind::otherState},
     3},
    {Operation::removeInstrument, "removePaymentInstrument", true, {}, 0},
};

/// Those that suit every operation come first.
constexpr std::pair<FaultKind, std::string_view> kinds[] = {
    {FaultKind::error, "error"},
    {FaultKind::delay, "delay"},
    {FaultKind::refused, "refused"},
    {FaultKind::reset, "reset"},
    {FaultKind::garbage, "garbage"},
    {FaultKind::never, "never"},
    {FaultKind::twice, "twice"},
    {FaultKind::cut, "cut"},
    {FaultKind::slow, "slow"},
    {FaultKind::stalled, "stalled"},
    {FaultKind::noToken, "no-token"},
    {FaultKind::noIdentifier, "no-identifier"},
    {FaultKind::otherState, "other-state"},
    {FaultKind::noList, "no-list"},
};

constexpr std::pair<Distribution, std::string_view> distributions[] = {
    {Distribution::uniform, "uniform"},
    {Distribution::normal, "normal"},
    {Distribution::logNormal, "log-normal"},
};

const PossibleOperation& possible(Operation operation) {
  return *std::find_if(std::begin(possibleOperations), std::end(possibleOperations),
                       [&](const auto& row) { return row.operation == operation; });
}

template <class Value, std::size_t count>
std::string_view nameIn(const std::pair<Value, std::string_view> (&table)[count], Value value) {
  return std::find_if(std::begin(table), std::end(table),
                      [&](const auto& row) { return row.first == value; })
      ->second;
}

template <class Value, std::size_t count>
std::optional<Value> valueIn(const std::pair<Value, std::string_view> (&table)[count],
                             std::string_view name) {
  const auto* found = std::find_if(std::begin(table), std::end(table),
                                   [&](const auto& row) { return row.second == name; });
  return found == std::end(table) ? std::nullopt : std::optional(found->first);
}

template <class Values>
std::string listed(const Values& values) {
  std::string text;
  for (const auto value : values) (text += text.empty() ? "" : ", ") += textOf(value);
  return text;
}

bool lies(std::int64_t value, std::int64_t least, std::int64_t most) {
  return value >= least && value <= most;
}

bool isHeaderText(const std::string& text) {
  return text.size() <= 200 && std::all_of(text.begin(), text.end(), [](char character) {
           return character >= ' ' && character < 127;
         });
}

bool isHeaderName(const std::string& name) {
  return !name.empty() && isHeaderText(name) &&
         std::all_of(name.begin(), name.end(), [](char character) {
           return character == '-' || (character >= '0' && character <= '9') ||
                  (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
         });
}

/// What only one kind has.
std::string problemOfReply(const Fault& fault) {
  if (fault.kind != FaultKind::error && (fault.status || !fault.headers.empty())) {
    return "Only the fault 'error' has a status and headers.";
  }
  if (fault.status && !lies(*fault.status, 400, 599)) {
    return "The status of an error lies between 400 and 599.";
  }
  constexpr std::size_t mostHeaders = 16;
  const bool areGood =
      fault.headers.size() <= mostHeaders &&
      std::all_of(fault.headers.begin(), fault.headers.end(), [](const auto& header) {
        return isHeaderName(header.first) && isHeaderText(header.second) &&
               header.first != "Content-Length" && header.first != "Transfer-Encoding" &&
               header.first != "Connection";
      });
  if (!areGood) return "A header of an error is short and plain, and does not frame the reply.";
  constexpr std::int64_t most = 1LL << 30;
  if ((fault.kind == FaultKind::cut) != fault.bytes.has_value() ||
      (fault.bytes && !lies(*fault.bytes, 0, most))) {
    return "The fault 'cut', and no other, needs its bytes.";
  }
  if ((fault.kind == FaultKind::slow) != fault.bytesPerSecond.has_value() ||
      (fault.bytesPerSecond && !lies(*fault.bytesPerSecond, 1, most))) {
    return "The fault 'slow', and no other, needs its bytes per second.";
  }
  return "";
}

}  // namespace

std::string_view textOf(Operation operation) { return possible(operation).name; }
std::string_view textOf(FaultKind kind) { return nameIn(kinds, kind); }
std::string_view textOf(Distribution distribution) { return nameIn(distributions, distribution); }

std::optional<Operation> operationNamed(std::string_view name) {
  const auto* found = std::find_if(std::begin(possibleOperations), std::end(possibleOperations),
                                   [&](const auto& row) { return row.name == name; });
  return found == std::end(possibleOperations) ? std::nullopt : std::optional(found->operation);
}

std::optional<FaultKind> faultKindNamed(std::string_view name) { return valueIn(kinds, name); }

std::optional<Distribution> distributionNamed(std::string_view name) {
  return valueIn(distributions, name);
}

std::vector<Operation> allOperations() {
  std::vector<Operation> all;
  for (const auto& row : possibleOperations) all.push_back(row.operation);
  return all;
}

std::vector<FaultKind> kindsOf(Operation operation) {
  std::vector<FaultKind> suitable;
  for (const auto& [kind, name] : kinds) {
    if (kind < FaultKind::noToken) suitable.push_back(kind);
  }
  const auto& row = possible(operation);
  suitable.insert(suitable.end(), row.kinds.begin(), row.kinds.begin() + row.kindCount);
  return suitable;
}

bool hasUseCase(Operation operation) { return possible(operation).hasUseCase; }

std::string noSuchOperation(std::string_view name) {
  return "There is no operation '" + maskedText(name) +
         "'; possible are: " + listed(allOperations()) + ".";
}

std::string noSuchKind(std::string_view name) {
  std::string all;
  for (const auto& row : kinds) (all += all.empty() ? "" : ", ") += row.second;
  return "There is no fault '" + maskedText(name) + "'; possible are: " + all + ".";
}

std::string problemOf(const Fault& fault) {
  const auto suitable = kindsOf(fault.operation);
  const std::string operation(textOf(fault.operation));
  if (std::find(suitable.begin(), suitable.end(), fault.kind) == suitable.end()) {
    return "The fault '" + std::string(textOf(fault.kind)) + "' makes no sense for " + operation +
           "; possible are: " + listed(suitable) + ".";
  }
  if (fault.useCase && !hasUseCase(fault.operation)) {
    return "Calls of " + operation + " have no use case.";
  }
  if (fault.useCase && !isUseCase(*fault.useCase)) return unknownUseCase().sentence;
  if (fault.remaining && *fault.remaining < 1) return "A fault must meet at least one call.";
  constexpr std::int64_t longestDelay = 24LL * 60 * 60 * 1000;
  if (!lies(fault.delayMilliseconds, 0, longestDelay)) {
    return "A delay lies between 0 and " + std::to_string(longestDelay) + " milliseconds.";
  }
  if (!lies(fault.spreadMilliseconds, 0, longestDelay)) {
    return "A delay spreads by 0 to " + std::to_string(longestDelay) + " milliseconds.";
  }
  if (fault.kind == FaultKind::delay && fault.delayMilliseconds + fault.spreadMilliseconds == 0) {
    return "A delay needs its milliseconds.";
  }
  if (fault.distribution == Distribution::logNormal && fault.delayMilliseconds == 0) {
    return "A log-normal delay needs its median.";
  }
  if (!lies(fault.probability, 1, 100)) {
    return "A probability lies between 1 and 100 in a hundred.";
  }
  return problemOfReply(fault);
}

Faults::Faults(std::shared_ptr<Store> store) : store_(std::move(store)) {}

std::string Faults::arm(const Fault& fault, std::int64_t* number) {
  auto problem = problemOf(fault);
  if (!problem.empty()) return problem;
  try {
    store_->write([&](Database& database) {
      const auto armed = insertFault(database, fault);
      if (number) *number = armed;
    });
  } catch (const StoreFailure& failure) {
    return failure.what();
  }
  return "";
}

std::vector<Fault> Faults::armed() const { return store_->read(readFaults); }

void Faults::clear() { store_->write(removeAllFaults); }

std::vector<Firing> Faults::firings() const { return store_->read(readFirings); }

}  // namespace hlv::sandbox
