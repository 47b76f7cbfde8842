// Sandboxes of a server, in JSON.
//
// Threading: pure functions; any. Readers throw `InvalidRecord`.
#pragma once

#include "Sandbox/JSON/Json.h"
#include "Sandbox/Records/SandboxDescription.h"

namespace hlv::sandbox {

Json jsonOf(const SandboxDescription& sandbox);
SandboxDescription sandboxIn(const Json& json);

/// Leaves out what is missing.
Json jsonOf(const NewSandbox& sandbox);
NewSandbox newSandboxIn(const Json& json);

Json jsonOf(const SnapshotDescription& snapshot);
SnapshotDescription snapshotIn(const Json& json);

}  // namespace hlv::sandbox
