// Faults and the two sides in JSON; both ends of a connection read and write them here. Private to
// the services.
//
// Threading: pure functions; any.
#pragma once

#include <vector>

#include "Sandbox/Fault.h"
#include "Sandbox/ProviderInstrument.h"
#include "Services/Json.h"

namespace hlv::services {

/// Without its number: a fault to be armed.
Json newFaultJson(const sandbox::Fault& fault);
Json jsonOf(const std::vector<sandbox::Fault>& faults);
Json jsonOf(const std::vector<sandbox::Firing>& firings);
/// With its use case, and without the number by which a list of the provider names it.
Json jsonOf(const sandbox::ProviderInstrument& instrument);

/// A fault to be armed. Throws `Refused`.
sandbox::Fault faultIn(const Json& json);

// These throw `Json::exception`, and that of the faults `Refused`, for what is no such list.

std::vector<sandbox::Fault> faultsIn(const Json& json);
std::vector<sandbox::Firing> firingsIn(const Json& json);
std::vector<sandbox::ProviderInstrument> storedInstrumentsIn(const Json& json);

}  // namespace hlv::services
