// Faults and their firings, in JSON.
//
// Threading: pure functions; any. Readers throw `InvalidRecord`, with the code "fault-refused" for
// an operation, a kind or a distribution that is none.
#pragma once

#include "Sandbox/Faults/Fault.h"
#include "Sandbox/JSON/Json.h"

namespace hlv::sandbox {

/// Without its number: a fault to be armed.
Json newFaultJson(const Fault& fault);
Fault newFaultIn(const Json& json);
/// What `json` leaves out stays as it is in `fault`.
Fault changedFault(Fault fault, const Json& json);

Json jsonOf(const Fault& fault);
Fault faultIn(const Json& json);

Json jsonOf(const Firing& firing);
Firing firingIn(const Json& json);

}  // namespace hlv::sandbox
