// What goes wrong between a client and a service, by an armed fault or for real.
#pragma once

#include "Values/Error.h"

namespace hlv::sandbox {

inline constexpr const char* transportErrorDomain = "HLVTransportErrorDomain";

enum class TransportErrorCode {
  /// Nobody listens at the address.
  unreachable = 1,
  timedOut = 2,
  /// The connection ended before a reply was whole.
  broken = 3,
  /// What came is no reply of the service.
  unreadable = 4,
};

/// Threading: any.
ErrorPtr transportError(TransportErrorCode code);

}  // namespace hlv::sandbox
