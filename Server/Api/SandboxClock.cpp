#include "Server/Api/SandboxClock.h"

#include "Sandbox/Records/Times.h"
#include "Sandbox/Store/Clock.h"
#include "Server/Http/HttpError.h"

namespace hlv::server {

std::chrono::sys_seconds clockTimeIn(const std::string& text) {
  const auto time = sandbox::timeIn(text);
  if (!time) throw HttpError(422, "wrong-type", "The clock reads as 2030-01-31T00:00:00Z.");
  return *time;
}

void moveClock(sandbox::Database& database, std::chrono::sys_seconds time) {
  if (!sandbox::setSandboxTime(database, time)) {
    throw HttpError(422, "clock-backwards", "A clock moves forwards only, up to the year 9999.");
  }
}

}  // namespace hlv::server
