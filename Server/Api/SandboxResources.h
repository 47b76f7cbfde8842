// The server's sandboxes over HTTP. Private to the server.
#pragma once

#include "Server/Api/Exchange.h"
#include "Server/Api/Registry.h"

namespace hlv::server {

/// Adds v1/sandboxes and v1/snapshots, whose exchanges need no world.
///
/// Threading: while the routes are filled, one thread. The registry outlives the routes' use.
void addSandboxRoutes(ApiRoutes& routes, Registry& registry);

}  // namespace hlv::server
