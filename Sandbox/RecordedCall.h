// What an app asks of the kit and hears from it, as the story tells it.
//
// Threading: any.
#pragma once

#include <memory>
#include <string>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Sandbox/Sandbox.h"

namespace hlv::sandbox {

/// Tells that the app asks for `what`, and returns a completion that tells what it hears, every
/// time that it does, and hands it on. The completion holds the sandbox weakly.
HLVSDKGuestCardCompletion recordedCall(const std::shared_ptr<Sandbox>& sandbox,
                                       const std::string& what, HLVSDKGuestCardCompletion heard);

}  // namespace hlv::sandbox
