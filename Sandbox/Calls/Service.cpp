#include "Sandbox/Calls/Service.h"

#include "Sandbox/Errors/SandboxError.h"

namespace hlv::sandbox {

int Service::deliveries(const std::optional<Fault>& fault) {
  if (!fault) return 1;
  if (fault->kind == FaultKind::never || fault->kind == FaultKind::stalled) return 0;
  return fault->kind == FaultKind::twice ? 2 : 1;
}

ErrorPtr Service::transportErrorOf(const std::optional<Fault>& fault) {
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

}  // namespace hlv::sandbox
