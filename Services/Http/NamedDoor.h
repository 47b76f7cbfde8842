// A door that is found again. Private to the services.
#pragma once

#include <string>

#include "Sandbox/Sandbox.h"
#include "Services/Http/Door.h"
#include "Services/Listening.h"

namespace hlv::services {

/// Opens a door at `port`. Port 0 is the one where the last door of this name to this store was,
/// so that whoever kept its URL finds it again; when that one is taken, any free one. The address
/// is refused as `Listening` says.
///
/// Threading: any.
Door::Opened openNamedDoor(sandbox::Sandbox& sandbox, const std::string& name, int port,
                           const Listening& listening, const Door::Handler& handler);

/// Such as "http://127.0.0.1:8080".
std::string urlOf(const Door& door, const Listening& listening);

}  // namespace hlv::services
