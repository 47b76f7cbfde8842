// The clock of a sandbox, as requests write it. Private to the server.
//
// Threading: any; moving runs inside `Store::write`.
#pragma once

#include <chrono>
#include <string>

#include "Sandbox/Store/Database.h"

namespace hlv::server {

/// Throws `HttpError` for anything but a time as the clock is read.
std::chrono::sys_seconds clockTimeIn(const std::string& text);
/// Throws `HttpError`, and moves nothing, where the clock cannot go.
void moveClock(sandbox::Database& database, std::chrono::sys_seconds time);

}  // namespace hlv::server
