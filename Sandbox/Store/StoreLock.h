// Keeps a store to one server.
//
// Threading: any thread, one at a time.
#pragma once

#include <memory>
#include <string>

#include "Values/Result.h"

namespace hlv::sandbox {

/// Held by the one server that works on a store, and by whoever removes the store. It lies in a
/// file beside the store, which a server leaves in place, so that nobody waits for one that goes
/// away. The system gives the lock back when the process ends, however it ends.
using StoreLock = std::shared_ptr<void>;

/// Tries once, and does not wait.
Result<StoreLock> lockStore(const std::string& storePath);

}  // namespace hlv::sandbox
