// What a tester does to one sandbox, over HTTP. Private to the server.
#pragma once

#include "Server/Api/Exchange.h"
#include "Server/Api/Registry.h"

namespace hlv::server {

/// Adds, below v1/sandbox: its description, faults, firings, scenarios, orphan instruments, the two
/// sides of a guest, clock, network, reset, snapshots and the request log. None of them is a call
/// of a service, so no fault meets them.
///
/// Threading: while the routes are filled, one thread. The registry outlives the routes' use.
void addControlRoutes(ApiRoutes& routes, Registry& registry);

}  // namespace hlv::server
