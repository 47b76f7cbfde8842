#include "Server/Api/Callers.h"

#include <string_view>

#include "Sandbox/Backend/BackendTables.h"

namespace hlv::server {

using sandbox::backend::Caller;

std::optional<std::string> sessionOf(const Exchange& exchange) {
  const auto& authorization = exchange.request.authorization;
  if (!authorization) return std::nullopt;
  constexpr std::string_view scheme = "Bearer ";
  if (!authorization->starts_with(scheme)) {
    throw HttpError(401, "not-signed-in", "Only the session of a guest authorises a request.");
  }
  return authorization->substr(scheme.size());
}

Caller callerOf(const Exchange& exchange) {
  const auto session = sessionOf(exchange);
  return {session ? Caller::Kind::session : Caller::Kind::anyone, exchange.part(2),
          session.value_or("")};
}

std::string guestMeant(sandbox::Database& database, const std::optional<std::string>& named,
                       const std::optional<std::string>& session) {
  if (named) {
    return sandbox::backend::ownerOf(database, {Caller::Kind::anyone, *named});
  }
  auto guest =
      session ? sandbox::readSessionGuest(database, *session) : sandbox::readOnlyGuest(database);
  if (!guest) {
    throw HttpError(422, "guest-needed", "The request has to name its guest.");
  }
  return *guest;
}

}  // namespace hlv::server
