#include "Sandbox/Errors/TransportError.h"

#include "Sandbox/Errors/SandboxError.h"

namespace hlv::sandbox {
namespace {

const char* sentenceOf(TransportErrorCode code) {
  switch (code) {
    case TransportErrorCode::unreachable:
      return "The service cannot be reached.";
    case TransportErrorCode::timedOut:
      return "The service did not answer in time.";
    case TransportErrorCode::broken:
      return "The connection ended before the service had answered.";
    case TransportErrorCode::unreadable:
      return "What the service answered cannot be read.";
  }
  return "The service cannot be used.";
}

}  // namespace

ErrorPtr transportError(TransportErrorCode code) {
  return SandboxError::make(transportErrorDomain, code, sentenceOf(code));
}

}  // namespace hlv::sandbox
