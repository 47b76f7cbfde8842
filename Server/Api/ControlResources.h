// What a tester does to one sandbox, over HTTP. Private to the server.
#pragma once

#include <string>

#include "Sandbox/Faults/Fault.h"
#include "Sandbox/Testing/Scenarios.h"
#include "Server/Api/Exchange.h"
#include "Server/Api/Registry.h"

namespace hlv::server {

/// Adds, below v1/sandbox: its description, faults, firings, scenarios, orphan instruments, the two
/// sides of a guest, clock, network, reset, snapshots and the request log. None of them is a call
/// of a service, so no fault meets them.
///
/// Threading: while the routes are filled, one thread. The registry outlives the routes' use.
void addControlRoutes(ApiRoutes& routes, Registry& registry);

// The same for the console. They throw `HttpError` for what cannot be.

/// The fault that a request describes.
sandbox::Fault newFaultOf(const Exchange& exchange);
/// The scenario that a request's body names.
sandbox::Scenario scenarioIn(const sandbox::Json& body);
/// Inside `Store::write`.
void bringApart(sandbox::Database& database, const std::string& guest, sandbox::Scenario scenario);

}  // namespace hlv::server
