// Brings a backend and a provider apart, and back to the beginning; and the tester of a sandbox in
// this process. Private to the sandbox and the server.
//
// Threading: inside `Store::write`; of the tester, any.
#pragma once

#include <memory>
#include <string>

#include "Sandbox/Calls/Journal.h"
#include "Sandbox/Store/Store.h"
#include "Sandbox/Testing/Tester.h"
#include "Values/Result.h"

namespace hlv::sandbox {

/// Of one guest. No service is asked, so no fault meets it. Throws `Refusal`.
Result<> makeScenario(Database& database, const std::string& email, Scenario scenario);

/// Forgets guests, cards, sessions, users, instruments, faults, kept replies, the clock and the
/// journal, and turns the network on. The seed, the counts of what was made and of changes, and the
/// request log stay.
void forgetEverything(Database& database);

std::shared_ptr<Tester> makeTester(std::shared_ptr<Store> store, std::shared_ptr<Journal> journal);

}  // namespace hlv::sandbox
