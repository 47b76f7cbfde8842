// The rows of armed faults, and which of them meets a call. Private to the sandbox and the server.
//
// Threading: inside `Store::read` and `Store::write`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Sandbox/Faults/Fault.h"
#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

/// Oldest first.
std::vector<Fault> readFaults(Database& database);
std::optional<Fault> readFault(Database& database, std::int64_t number);
std::vector<Firing> readFirings(Database& database);
/// Arms a fault that makes sense, and returns its number.
std::int64_t insertFault(Database& database, const Fault& fault);
/// Replaces the fault of that number. False when there is none.
bool replaceFault(Database& database, const Fault& fault);
/// False when there is none of that number.
bool removeFault(Database& database, std::int64_t number);
void removeAllFaults(Database& database);

/// Whether a fault may meet such a call, so that `takeFault` may have something to change.
bool mayMeetFault(Database& database, Operation operation);
/// Takes the oldest fault that meets a call, counts it down and records the firing. Its delay is
/// the one that was chosen for this call.
std::optional<Fault> takeFault(Database& database, Operation operation,
                               const std::optional<std::string>& useCase);

}  // namespace hlv::sandbox
