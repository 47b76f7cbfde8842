#include "Sandbox/Service/Service.h"

#include "Sandbox/TransportError.h"

namespace hlv::sandbox {

std::string Call::told() const {
  auto what = operation;
  if (!subject.empty()) what += " " + subject;
  if (useCase) what += " use case " + *useCase;
  return what;
}

std::optional<Fault> Service::Desk::meet(const Call& call) const {
  if (!isReachable(reachability->currentState())) return std::nullopt;
  try {
    auto fault = faults->take(call.operation, call.useCase);
    if (fault) journal->record(name, name, "fault '" + fault->kind + "' met " + fault->operation);
    return fault;
  } catch (const StoreFailure&) {
    return std::nullopt;
  }
}

void Service::Desk::checkWayIn(const std::optional<Fault>& fault) const {
  if (!isReachable(reachability->currentState())) throw Refusal{notConnectedError()};
  if (fault && fault->kind == "error") {
    throw Refusal{SandboxError::make(errorDomain, fault->code,
                                     "The service failed, as the armed fault demands.")};
  }
  if (fault && fault->kind == "refused") {
    throw Refusal{transportError(TransportErrorCode::unreachable)};
  }
}

void Service::Desk::checkWayOut(const std::optional<Fault>& fault) const {
  if (!fault || way == Way::door) return;
  if (fault->kind == "reset") throw Refusal{transportError(TransportErrorCode::broken)};
  if (fault->kind == "garbage") {
    throw Refusal{transportError(TransportErrorCode::unreadable)};
  }
}

ErrorPtr Service::Desk::errorFor(const StoreFailure& failure) const {
  return SandboxError::make(errorDomain, BackendErrorCode::storeFailed,
                            "The service cannot be used at the moment.", failure.what());
}

}  // namespace hlv::sandbox
