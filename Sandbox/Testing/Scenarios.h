// Brings a backend and a provider apart, and back to the beginning. Private to the sandbox and the
// server.
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

/// Forgets guests, cards, sessions, users, instruments, faults, kept replies, the clock and the
/// journal, and turns the network on. The seed, the counts of what was made and of changes, and the
/// request log stay.
void forgetEverything(Database& database);

}  // namespace hlv::sandbox
