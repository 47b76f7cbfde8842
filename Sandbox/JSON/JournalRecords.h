// The timeline, in JSON.
//
// Threading: pure functions; any.
#pragma once

#include "Sandbox/Calls/Journal.h"
#include "Sandbox/JSON/Json.h"

namespace hlv::sandbox {

Json jsonOf(const Event& event);
Json jsonOf(const Journal::Operation& operation);

}  // namespace hlv::sandbox
