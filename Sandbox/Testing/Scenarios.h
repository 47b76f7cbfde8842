// Brings a backend and a provider apart. Private to the sandbox and the server.
//
// Threading: inside `Store::write`.
#pragma once

#include <string>

#include "Sandbox/Store/Database.h"
#include "Sandbox/Testing/Scenario.h"
#include "Values/Result.h"

namespace hlv::sandbox {

/// Of one guest. No service is asked, so no fault meets it. Throws `Refusal`.
Result<> makeScenario(Database& database, const std::string& email, Scenario scenario);

}  // namespace hlv::sandbox
