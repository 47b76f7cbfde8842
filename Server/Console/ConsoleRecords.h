// The timeline, stored data and what can be chosen, in JSON. Private to the server.
//
// Threading: pure functions; any. Those that take a database run inside `Store::read`.
#pragma once

#include <vector>

#include "Sandbox/JSON/Json.h"
#include "Sandbox/Records/EnteredAddress.h"
#include "Sandbox/Store/Database.h"
#include "Server/Console/App.h"
#include "Server/Http/HttpMessages.h"

namespace hlv::server {

using sandbox::Json;

/// Guest, network, the two sides in pairs, the armed faults, and the oldest operation that is kept.
Json storedData(sandbox::Database& database);
/// Test cards, without their numbers; scenarios; the operations with the kinds of faults they have.
Json choices();
/// How an operation of the app came out.
HttpReply replyOf(const App::Outcome& outcome, const std::string& requestID);

/// Throws `InvalidRecord`.
sandbox::AddressFields addressIn(const Json& json);

}  // namespace hlv::server
