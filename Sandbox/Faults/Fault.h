// Failures on demand.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Values/Result.h"

namespace hlv::sandbox {

/// What a service is asked for, backend first.
enum class Operation {
  updateGuest,
  addCard,
  deleteCard,
  updateCard,
  fetchCards,
  createUserToken,
  addInstrument,
  listInstruments,
  removeInstrument,
};

/// What a fault does to a call. The first group suits every operation. A call that is refused or
/// never replied to has no effect; one whose reply is reset, replaced by garbage, cut or stalled
/// was served, and only the caller does not know.
enum class FaultKind {
  error,
  delay,
  refused,
  reset,
  garbage,
  never,
  twice,
  /// The reply ends after some bytes.
  cut,
  /// The reply comes at some bytes per second.
  slow,
  /// Half of the reply comes, and then nothing.
  stalled,

  noToken,
  noIdentifier,
  otherState,
  noList,
};

/// How the delays of one fault spread.
enum class Distribution {
  /// From the delay to the delay and the spread.
  uniform,
  /// The delay is the mean and the spread the standard deviation.
  normal,
  /// The delay is the median; of a hundred calls 84 wait no longer than the delay and the spread.
  logNormal,
};

/// An operation's first keyword; a kind's name such as "no-token"; "uniform", "normal" and
/// "log-normal". Threading of all of these: any.
std::string_view textOf(Operation operation);
std::string_view textOf(FaultKind kind);
std::string_view textOf(Distribution distribution);
/// Otherwise a sentence with what is possible, which masks card numbers.
Result<Operation> operationNamed(std::string_view name);
Result<FaultKind> faultKindNamed(std::string_view name);
Result<Distribution> distributionNamed(std::string_view name);
std::vector<Operation> allOperations();
std::vector<FaultKind> allFaultKinds();
/// The kinds that suit an operation.
std::vector<FaultKind> kindsOf(Operation operation);
/// Whether its calls have a use case, by which a fault can choose among them.
bool hasUseCase(Operation operation);

/// What to do to calls of one operation of a service. Armed in the store, so that a fault outlives
/// the process that armed it.
struct Fault {
  Operation operation = Operation::updateGuest;
  FaultKind kind = FaultKind::error;
  /// How many more calls it meets; missing means every one.
  std::optional<std::int64_t> remaining = 1;
  /// How long the reply waits. In one process a delayed reply comes after every undelayed one that
  /// is on its way, so that the order does not depend on the machine.
  std::int64_t delayMilliseconds = 0;
  /// How far the delays spread; each is chosen at random, repeatably under the store's seed.
  std::int64_t spreadMilliseconds = 0;
  Distribution distribution = Distribution::uniform;
  /// How many in a hundred calls it meets, as repeatable. A call that it does not meet is
  /// not counted down.
  std::int64_t probability = 100;
  /// The error's code, for the kind `error`.
  std::int64_t code = 500;
  /// Over HTTP, for the kind `error`: the status instead of the code's own, and further headers.
  std::optional<std::int64_t> status;
  std::vector<std::pair<std::string, std::string>> headers;
  /// Over HTTP, for the kind `cut`: after how many bytes.
  std::optional<std::int64_t> bytes;
  /// Over HTTP, for the kind `slow`.
  std::optional<std::int64_t> bytesPerSecond;
  /// Meets only calls for this use case; missing means all.
  std::optional<std::string> useCase;
  /// Given when it is armed.
  std::int64_t number = 0;

  bool operator==(const Fault&) const = default;
};

/// One call that met a fault.
struct Firing {
  std::int64_t faultNumber = 0;
  Operation operation = Operation::updateGuest;
  FaultKind kind = FaultKind::error;
  /// Later ones have greater numbers; 0 where the services are elsewhere.
  std::int64_t number = 0;
};

/// Whether the fault makes sense.
Result<> checkFault(const Fault& fault);

}  // namespace hlv::sandbox
