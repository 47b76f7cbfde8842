#include "Server/Api/Inputs.h"

#include <string_view>

#include "Sandbox/JSON/Json.h"
#include "Sandbox/Records/Times.h"
#include "Sandbox/Store/Clock.h"
#include "Server/Http/HttpError.h"

namespace hlv::server {

std::optional<std::string> sessionOf(const HttpRequest& request) {
  const auto& authorization = request.authorization;
  if (!authorization) return std::nullopt;
  constexpr std::string_view scheme = "Bearer ";
  if (!authorization->starts_with(scheme)) {
    throw HttpError(401, "not-signed-in", "Only the session of a guest authorises a request.");
  }
  return authorization->substr(scheme.size());
}

std::int64_t numberIn(const HttpRequest& request, const std::string& name, std::int64_t otherwise,
                      std::int64_t least, std::int64_t greatest) {
  const auto text = request.queryValue(name);
  if (!text) return otherwise;
  const auto value = sandbox::numberOf(*text);
  if (!value || *value < least || *value > greatest) {
    throw HttpError(422, "wrong-type", "'" + name + "' is no number of this kind.");
  }
  return *value;
}

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
