// What both services do with every call, wherever it comes from: fail while the network is off,
// meet an armed fault, and turn refusals into results. Private to the sandbox, server and client.
//
// Threading: inside `Store::write`.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>

#include "Sandbox/Errors/SandboxError.h"
#include "Sandbox/Faults/Fault.h"
#include "Sandbox/Store/Database.h"
#include "Values/Error.h"

namespace hlv::sandbox {

/// One call, as it is recorded and as faults see it.
struct Call {
  Operation operation;
  NullableString useCase = {};
  /// What else a record should name; may be empty.
  std::string subject = {};

  /// As events name it; the reply's event says the same again, so that the two can be joined.
  std::string description() const;
};

/// What one service does with a call, given the fault that it met. Throws `Refusal`.
template <class... Results>
using Handling = std::function<std::tuple<Results...>(Database&, std::optional<FaultKind>)>;

/// What came of a call. What a fault does to the reply on its way is for the caller's transport.
template <class... Results>
struct Handled {
  std::tuple<Results...> results;
  std::optional<Fault> fault;
};

/// The results of a call that failed: nothing but the error, which every completion takes last.
template <class... Results>
std::tuple<Results...> failed(ErrorPtr error) {
  std::tuple<Results...> results;
  std::get<sizeof...(Results) - 1>(results) = std::move(error);
  return results;
}

/// "fault 'never' met createUserToken", as events say it.
std::string descriptionOf(const Fault& fault);

/// Whether the network is on and no fault can meet the call, so that its handling is all there is.
bool isUndisturbed(Database& database, const Call& call);

/// How often a caller in this process gets the results of a call that met a fault, or none.
int deliveries(const std::optional<Fault>& fault);
/// What such a caller gets instead; null for the results.
ErrorPtr transportErrorOf(const std::optional<Fault>& fault);

class CallHandler {
 public:
  CallHandler(std::string name, std::string errorDomain)
      : name_(std::move(name)), errorDomain_(std::move(errorDomain)) {}

  const std::string& name() const { return name_; }

  /// A call that is refused or never replied to has no effect, and results that nobody should see.
  template <class... Results>
  Handled<Results...> handle(Database& database, const Call& call,
                             const Handling<Results...>& handling) const {
    Handled<Results...> handled;
    try {
      handled.fault = faultMetBy(call, database);
      if (handled.fault && !requireServed(*handled.fault)) return handled;
      const auto kind = handled.fault ? std::optional(handled.fault->kind) : std::nullopt;
      handled.results = handling(database, kind);
    } catch (const Refusal& refusal) {
      handled.results = failed<Results...>(refusal.error);
    }
    return handled;
  }

  /// What a caller gets when the store fails under a call.
  ErrorPtr errorFor(const StoreFailure& failure) const;

 private:
  /// Throws the error of a network that is off.
  static std::optional<Fault> faultMetBy(const Call& call, Database& database);
  /// False where the call has no effect. Throws the error that the fault demands.
  bool requireServed(const Fault& fault) const;

  const std::string name_;
  const std::string errorDomain_;
};

}  // namespace hlv::sandbox
