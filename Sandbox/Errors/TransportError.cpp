#include "Sandbox/Errors/TransportError.h"

#include "Sandbox/Errors/SandboxError.h"
#include "Values/Names.h"

namespace hlv::sandbox {
namespace {

constexpr Names<TransportErrorCode, 4> sentences{
    {{TransportErrorCode::unreachable, "The service cannot be reached."},
     {TransportErrorCode::timedOut, "The service did not answer in time."},
     {TransportErrorCode::broken, "The connection ended before the service had answered."},
     {TransportErrorCode::unreadable, "What the service answered cannot be read."}}};

}  // namespace

ErrorPtr transportError(TransportErrorCode code) {
  return SandboxError::make(transportErrorDomain, code, std::string(sentences.of(code)));
}

}  // namespace hlv::sandbox
