// What time it is in a sandbox. Private to the sandbox and the server.
//
// Threading: inside `Store::read` and `Store::write`.
#pragma once

#include <chrono>

#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

std::chrono::sys_seconds machineTime();
/// The machine's time, until the sandbox's clock is set; from then on it runs on from there, and
/// stands still at the end of the year 9999.
std::chrono::sys_seconds sandboxTime(Database& database);
/// The month that cards expire by.
std::chrono::year_month sandboxMonth(Database& database);
/// Sets the clock. False, and nothing is changed, when that is before the time that it is now, or
/// beyond the year 9999.
[[nodiscard]] bool setSandboxTime(Database& database, std::chrono::sys_seconds time);

/// Back to the machine's time.
void resetSandboxTime(Database& database);

}  // namespace hlv::sandbox
