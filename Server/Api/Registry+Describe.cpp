#include <utility>

#include "Sandbox/Calls/Reachability.h"
#include "Sandbox/Records/Times.h"
#include "Sandbox/Store/Clock.h"
#include "Sandbox/Store/Identifiers.h"
#include "Sandbox/Store/Settings.h"
#include "Server/Api/Registry.h"
#include "Server/Http/HttpError.h"

namespace hlv::server {

using sandbox::Database;
using sandbox::SandboxDescription;

std::vector<SandboxDescription> Registry::list(const std::string& after, std::size_t limit) {
  std::vector<std::string> ids;
  {
    const std::lock_guard lock(mutex_);
    for (auto place = entries_.upper_bound(after); place != entries_.end() && ids.size() < limit;
         ++place) {
      ids.push_back(place->first);
    }
  }
  std::vector<SandboxDescription> descriptions;
  for (const auto& id : ids) {
    try {
      descriptions.push_back(describe(id));
    } catch (const HttpError& error) {
      if (error.status != 404) throw;  // It was deleted meanwhile.
    }
  }
  return descriptions;
}

SandboxDescription Registry::describe(const std::string& id) {
  SandboxDescription description;
  description.id = id;
  world(id)->store().read([&](Database& database) {
    description.seed = sandbox::seedOf(database);
    description.clock = sandbox::timeText(sandbox::sandboxTime(database));
    description.isNetworkOn = isReachable(sandbox::readNetworkState(database));
    description.guests = database.integer("SELECT count(*) FROM backend_guests");
  });
  const std::lock_guard lock(mutex_);
  const auto& entry = entryOf(id);
  description.isInMemory = entry.isInMemory;
  description.created = sandbox::timeText(entry.created);
  if (entry.expires) description.expires = sandbox::timeText(*entry.expires);
  const auto below = id == defaultID ? "" : "/sandboxes/" + id;
  description.backendURL = urls_.backend + below;
  description.providerURL = urls_.provider + below;
  description.controlURL = urls_.provider + below + "/v1/sandbox";
  description.consoleURL = urls_.console + below;
  return description;
}

std::optional<std::string> Registry::note(const std::string& name) {
  return registry_->read([&](Database& database) { return sandbox::readSetting(database, name); });
}

void Registry::setNote(const std::string& name, const std::string& text) {
  registry_->write([&](Database& database) { sandbox::writeSetting(database, name, text); });
}

}  // namespace hlv::server
