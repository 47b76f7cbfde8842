// What a request names: its caller, its guest, numbers and times. Private to the server.
//
// Threading: pure functions; any. Those that take a database run inside `Store::read` or
// `Store::write`. All throw `HttpError` for what makes no sense.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "Sandbox/Backend/Backend.h"
#include "Server/Http/HttpMessages.h"

namespace hlv::server {

/// The session of `Authorization: Bearer …`.
std::optional<std::string> sessionOf(const HttpRequest& request);
/// The guest whom a request of a tester is about: the one it names, else the session's, else the
/// sandbox's only one.
std::string guestMeant(sandbox::Database& database, const std::optional<std::string>& named,
                       const std::optional<std::string>& session);

/// A number of the query from `least` to `greatest`.
std::int64_t numberIn(const HttpRequest& request, const std::string& name, std::int64_t otherwise,
                      std::int64_t least, std::int64_t greatest);

/// A time as the clock is read.
std::chrono::sys_seconds clockTimeIn(const std::string& text);
/// Moves nothing where the clock cannot go.
void moveClock(sandbox::Database& database, std::chrono::sys_seconds time);

}  // namespace hlv::server
