// What an app asks of the kit and gets from it, as the timeline records it.
//
// Threading: any.
#pragma once

#include <memory>
#include <string>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Sandbox/Sandbox.h"

namespace hlv::sandbox {

/// Records that the app asks for `what`, and returns a completion that records what it gets, every
/// time that it does, and hands it on. The completion holds the sandbox weakly.
HLVSDKGuestCardCompletion recordedCall(const std::shared_ptr<Sandbox>& sandbox,
                                       const std::string& what,
                                       HLVSDKGuestCardCompletion completion);

}  // namespace hlv::sandbox
