// The routes of the services, and the documents that describe them. Private to the server.
//
// Threading: for the start alone. The registry outlives the routes.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "Server/Api/Exchange.h"

namespace hlv::sandbox::server {

/// Below a sandbox: the backend's, the provider's, and test control's.
void addBackendRoutes(ApiRoutes& routes);
void addProviderRoutes(ApiRoutes& routes);
void addControlRoutes(ApiRoutes& routes, Registry& registry);
/// Below none: of all sandboxes and snapshots.
void addSandboxRoutes(ApiRoutes& routes, Registry& registry);

/// Describes a sandbox as it is then.
std::function<HttpReply()> describing(Registry& registry, const std::string& id);

/// A route for the OpenAPI 3.1 of "backend", "provider", "control" or "sandboxes": one document
/// that refers to no other.
void addDocument(ApiRoutes& routes, std::string_view path, std::string_view name);

}  // namespace hlv::sandbox::server
