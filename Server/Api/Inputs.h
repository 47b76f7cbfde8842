// What a request names: its caller, numbers and times. Private to the server.
//
// Threading: pure functions; any. Those that take a database run inside `Store::read` or
// `Store::write`. All throw `HttpError` for what makes no sense.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "Sandbox/Store/Database.h"
#include "Server/Http/HttpMessages.h"

namespace hlv::server {

/// The session of `Authorization: Bearer …`.
std::optional<std::string> sessionOf(const HttpRequest& request);
/// A number of the query from `least` to `greatest`.
std::int64_t numberIn(const HttpRequest& request, const std::string& name, std::int64_t otherwise,
                      std::int64_t least, std::int64_t greatest);

/// A time as the clock is read.
std::chrono::sys_seconds clockTimeIn(const std::string& text);
/// Moves nothing where the clock cannot go.
void moveClock(sandbox::Database& database, std::chrono::sys_seconds time);

}  // namespace hlv::server
