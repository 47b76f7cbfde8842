#include "Sandbox/Faults/Fault.h"

#include <algorithm>

#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Values/Names.h"

namespace hlv::sandbox {
namespace {

constexpr Names<Operation, 9> operations{{
    {Operation::updateGuest, "updateCurrentGuestWithRequest"},
    {Operation::addCard, "addCreditCardForGuest"},
    {Operation::deleteCard, "deleteCreditCardWithID"},
    {Operation::updateCard, "updateCreditCard"},
    {Operation::fetchCards, "fetchGuestCreditCards"},
    {Operation::createUserToken, "createUserToken"},
    {Operation::addInstrument, "addPaymentInstrument"},
    {Operation::listInstruments, "getPaymentInstrumentsList"},
    {Operation::removeInstrument, "removePaymentInstrument"},
}};

constexpr Names<FaultKind, 14> kinds{{
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
}};

constexpr Names<Distribution, 3> distributions{{
    {Distribution::uniform, "uniform"},
    {Distribution::normal, "normal"},
    {Distribution::logNormal, "log-normal"},
}};

bool suits(FaultKind kind, Operation operation) {
  switch (kind) {
    case FaultKind::noToken:
      return operation == Operation::createUserToken;
    case FaultKind::noIdentifier:
    case FaultKind::otherState:
      return operation == Operation::createUserToken || operation == Operation::addInstrument ||
             operation == Operation::listInstruments;
    case FaultKind::noList:
      return operation == Operation::fetchCards || operation == Operation::listInstruments;
    default:
      return true;
  }
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
  return !name.empty() && isHeaderText(name) && name != "Content-Length" &&
         name != "Transfer-Encoding" && name != "Connection" &&
         std::all_of(name.begin(), name.end(), [](char character) {
           return character == '-' || (character >= '0' && character <= '9') ||
                  (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
         });
}

bool areHeaders(const std::vector<std::pair<std::string, std::string>>& headers) {
  constexpr std::size_t most = 16;
  return headers.size() <= most &&
         std::all_of(headers.begin(), headers.end(), [](const auto& header) {
           return isHeaderName(header.first) && isHeaderText(header.second);
         });
}

/// Whether only one kind has a number, and that one within limits.
bool isOnlyOf(bool isKind, std::optional<std::int64_t> number, std::int64_t least) {
  constexpr std::int64_t most = 1LL << 30;
  return isKind ? number && lies(*number, least, most) : !number;
}

}  // namespace

std::string_view textOf(Operation operation) { return operations.of(operation); }
std::string_view textOf(FaultKind kind) { return kinds.of(kind); }
std::string_view textOf(Distribution distribution) { return distributions.of(distribution); }

Result<Operation> operationNamed(std::string_view name) {
  return operations.require(name, "operation", maskedText(name));
}

Result<FaultKind> faultKindNamed(std::string_view name) {
  return kinds.require(name, "fault", maskedText(name));
}

Result<Distribution> distributionNamed(std::string_view name) {
  if (const auto distribution = distributions.find(name)) return *distribution;
  return Result<Distribution>::failure(
      "The distribution of a fault is uniform, normal or log-normal.");
}

std::vector<Operation> allOperations() { return operations.values(); }

std::vector<FaultKind> allFaultKinds() { return kinds.values(); }

std::vector<FaultKind> kindsOf(Operation operation) {
  auto suitable = kinds.values();
  std::erase_if(suitable, [&](FaultKind kind) { return !suits(kind, operation); });
  return suitable;
}

bool hasUseCase(Operation operation) {
  return operation == Operation::addCard || operation >= Operation::createUserToken;
}

Result<> checkFault(const Fault& fault) {
  constexpr std::int64_t longestDelay = 24LL * 60 * 60 * 1000;
  const std::string operation(textOf(fault.operation));
  const auto longest = std::to_string(longestDelay);
  const bool isError = fault.kind == FaultKind::error;
  const std::pair<bool, std::string> rules[] = {
      {suits(fault.kind, fault.operation),
       "The fault '" + std::string(textOf(fault.kind)) + "' makes no sense for " + operation +
           "; possible are: " + joined(namesOf(kindsOf(fault.operation))) + "."},
      {!fault.useCase || hasUseCase(fault.operation),
       "Calls of " + operation + " have no use case."},
      {!fault.useCase || isUseCase(*fault.useCase), unknownUseCase().sentence},
      {fault.remaining.value_or(1) >= 1, "A fault must meet at least one call."},
      {lies(fault.delayMilliseconds, 0, longestDelay),
       "A delay lies between 0 and " + longest + " milliseconds."},
      {lies(fault.spreadMilliseconds, 0, longestDelay),
       "A delay spreads by 0 to " + longest + " milliseconds."},
      {fault.kind != FaultKind::delay || fault.delayMilliseconds > 0 ||
           fault.spreadMilliseconds > 0,
       "A delay needs its milliseconds."},
      {fault.distribution != Distribution::logNormal || fault.delayMilliseconds > 0,
       "A log-normal delay needs its median."},
      {lies(fault.probability, 1, 100), "A probability lies between 1 and 100 in a hundred."},
      {isError || (!fault.status && fault.headers.empty()),
       "Only the fault 'error' has a status and headers."},
      {lies(fault.status.value_or(400), 400, 599),
       "The status of an error lies between 400 and 599."},
      {areHeaders(fault.headers),
       "A header of an error is short and plain, and does not frame the reply."},
      {isOnlyOf(fault.kind == FaultKind::cut, fault.bytes, 0),
       "The fault 'cut', and no other, needs its bytes."},
      {isOnlyOf(fault.kind == FaultKind::slow, fault.bytesPerSecond, 1),
       "The fault 'slow', and no other, needs its bytes per second."}};
  for (const auto& [isKept, sentence] : rules) {
    if (!isKept) return Result<>::failure(sentence);
  }
  return {};
}

}  // namespace hlv::sandbox
