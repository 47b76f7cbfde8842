// What a tester does to the services, over HTTP. Private to the services.
#pragma once

#include <memory>

#include "Sandbox/Sandbox.h"
#include "Services/Http/Routes.h"

namespace hlv::services {

/// Arms the fault, or makes the scene, that a request describes. They throw `Refused`.
void armFault(sandbox::Sandbox& sandbox, const HttpRequest& request);
void makeScene(sandbox::Sandbox& sandbox, const HttpRequest& request);

/// Adds, under /v1/sandbox: faults, firings, scenes, instruments to plant, and the two sides of the
/// signed-in guest. None of them is a call of a service, so no fault meets them.
///
/// Threading: as `Routes`.
void addTesterRoutes(Routes& routes, const std::shared_ptr<sandbox::Sandbox>& sandbox);

}  // namespace hlv::services
