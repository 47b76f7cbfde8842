// The sandbox's client of its backend. Private to the sandbox.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Sandbox/Backend/Guest.h"
#include "Sandbox/Calls/Service.h"

namespace hlv::sandbox {

/// Threading of it and of the client: any.
std::shared_ptr<HLVSDKAPIManager> makeBackendClient(std::shared_ptr<Guests> guests,
                                                    const Service::Surroundings& surroundings);

}  // namespace hlv::sandbox
