// Calls whose answers are kept together with their effects.
#pragma once

#include <functional>

namespace hlv::sandbox {

/// For a caller that may ask again, and then must hear what it was answered. Runs `serve`, in which
/// a call has its effect and its completion is called, as one transaction of the store: what the
/// completion keeps is there when the effect is, and only then. The completion is called again when
/// the answer leaves, with an error where the transaction failed.
///
/// Called on a service's thread. Throws what the transaction does when it fails.
using AsOne = std::function<void(const std::function<void()>& serve)>;

}  // namespace hlv::sandbox
