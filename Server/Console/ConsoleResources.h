// The console over HTTP: its page, and what the page asks for. Private to the server.
#pragma once

#include <memory>

#include "Server/Api/Exchange.h"
#include "Server/Api/Registry.h"
#include "Server/Console/App.h"

namespace hlv::server {

/// A card may be typed into the app here, as into any app; its number goes to the kit and nowhere
/// else, and no reply has it.
///
/// Threading: while the routes are filled, one thread. The registry outlives the routes' use.
void addConsoleRoutes(ApiRoutes& routes, Registry& registry, const std::shared_ptr<App>& app);

}  // namespace hlv::server
