// The console over HTTP: its page, and what the page asks for. Private to the server.
//
// Threading: pure functions; any. Those that take a database run inside `Store::read`.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "Sandbox/JSON/Json.h"
#include "Sandbox/Store/Database.h"
#include "Server/Api/Exchange.h"
#include "Server/Api/Registry.h"
#include "Server/Console/App.h"
#include "Server/Http/HttpMessages.h"

namespace hlv::sandbox::server {

/// A card may be typed into the app here, as into any app; its number goes to the kit and nowhere
/// else, and no reply has it.
///
/// Threading: while the routes are filled, one thread. The registry outlives the routes' use.
void addConsoleRoutes(ApiRoutes& routes, Registry& registry, const std::shared_ptr<App>& app);

/// Guest, network, the two sides in pairs, the armed faults, and the oldest operation that is kept.
Json storedData(Database& database);
/// Server-sent events whose data names its sandbox: "state", which is "live" or "deleted";
/// "timeline", with the operations and events that are new; "requests", with what is new in the
/// request log; and "stored", when something else has changed. The first of each kind is whole, and
/// says so: a page that comes again, perhaps to another process, need not know where it was.
///
/// The registry outlives the stream.
EventStream liveFeed(Registry& registry, const std::set<std::string>& sandboxes);

/// The files of the page, which are part of the program.
void addPageRoutes(ApiRoutes& routes);

}  // namespace hlv::sandbox::server
