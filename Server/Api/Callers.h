// For whom a request is made. Private to the server.
//
// Threading: pure functions; any.
#pragma once

#include <optional>
#include <string>

#include "Sandbox/Backend/Backend.h"
#include "Server/Api/Exchange.h"

namespace hlv::server {

/// The session of `Authorization: Bearer …`. Throws `HttpError` for another kind of authorisation.
std::optional<std::string> sessionOf(const Exchange& exchange);

/// Of a request whose path names a guest.
sandbox::backend::Caller callerOf(const Exchange& exchange);

/// The guest whom a request of a tester is about: the one it names, else the session's, else the
/// sandbox's only one. Throws `HttpError` where that is nobody. Inside `Store::read` and
/// `Store::write`.
std::string guestMeant(sandbox::Database& database, const std::optional<std::string>& named,
                       const std::optional<std::string>& session);

/// "2 cards", "1 card" or "no list", as events say it.
template <class Items>
std::string counted(const std::optional<Items>& items, const std::string& noun) {
  if (!items) return "no list";
  return std::to_string(items->size()) + " " + noun + (items->size() == 1 ? "" : "s");
}

}  // namespace hlv::server
