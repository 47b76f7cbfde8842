// The server's sandboxes over HTTP. Private to the server.
#pragma once

#include "Server/Api/Exchange.h"
#include "Server/Api/Registry.h"

namespace hlv::server {

/// Adds v1/sandboxes and v1/snapshots, whose exchanges need no world.
///
/// Threading: while the routes are filled, one thread. The registry outlives the routes' use.
void addSandboxRoutes(ApiRoutes& routes, Registry& registry);

// What can be done to a sandbox by its id or from within. Each replies later.

void resetSandbox(Registry& registry, const Exchange& exchange, const std::string& id);
void snapshotSandbox(Registry& registry, const Exchange& exchange, const std::string& id);
/// To the snapshot that the request names.
void restoreSandbox(Registry& registry, const Exchange& exchange, const std::string& id);

}  // namespace hlv::server
