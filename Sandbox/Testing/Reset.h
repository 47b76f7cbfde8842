// A sandbox as it was at the beginning. Private to the sandbox and the server.
//
// Threading: inside `Store::write`.
#pragma once

#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

/// Forgets guests, cards, sessions, users, instruments, faults, kept replies, the clock and the
/// journal, and turns the network on. The seed, the counts of what was made and of changes, and the
/// request log stay.
void forgetEverything(Database& database);

}  // namespace hlv::sandbox
