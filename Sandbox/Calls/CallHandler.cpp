#include "Sandbox/Calls/CallHandler.h"

#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Errors/ErrorCodes.h"
#include "Sandbox/Faults/FaultTables.h"

namespace hlv::sandbox {

std::string Call::description() const {
  std::string what(textOf(operation));
  if (!subject.empty()) what += " " + subject;
  if (useCase) what += " use case " + *useCase;
  return what;
}

std::string descriptionOf(const Fault& fault) {
  return "fault '" + std::string(textOf(fault.kind)) + "' met " +
         std::string(textOf(fault.operation));
}

bool isUndisturbed(Database& database, const Call& call) {
  return isReachable(readNetworkState(database)) && !mayMeetFault(database, call.operation);
}

int deliveries(const std::optional<Fault>& fault) {
  if (!fault) return 1;
  if (fault->kind == FaultKind::never || fault->kind == FaultKind::stalled) return 0;
  return fault->kind == FaultKind::twice ? 2 : 1;
}

ErrorPtr transportErrorOf(const std::optional<Fault>& fault) {
  if (!fault) return nullptr;
  switch (fault->kind) {
    case FaultKind::refused:
      return transportError(TransportErrorCode::unreachable);
    case FaultKind::reset:
    case FaultKind::cut:
      return transportError(TransportErrorCode::broken);
    case FaultKind::garbage:
      return transportError(TransportErrorCode::unreadable);
    default:
      return nullptr;
  }
}

std::optional<Fault> CallHandler::faultMetBy(const Call& call, Database& database) {
  if (!isReachable(readNetworkState(database))) throw Refusal{notConnectedError()};
  return takeFault(database, call.operation, call.useCase);
}

bool CallHandler::requireServed(const Fault& fault) const {
  if (fault.kind == FaultKind::error) {
    throw Refusal{SandboxError::make(errorDomain_, fault.code,
                                     "The service failed, as the armed fault demands.")};
  }
  return fault.kind != FaultKind::refused && fault.kind != FaultKind::never;
}

ErrorPtr CallHandler::errorFor(const StoreFailure& failure) const {
  return SandboxError::make(errorDomain_, BackendErrorCode::storeFailed,
                            "The service cannot be used at the moment.", failure.what());
}

}  // namespace hlv::sandbox
