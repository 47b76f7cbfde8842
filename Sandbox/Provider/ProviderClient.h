// The sandbox's client of its payment provider. Private to the sandbox.
#pragma once

#include <memory>

#include "Host/PaylevenFramework/PLVInAppClient.h"
#include "Sandbox/Calls/Service.h"

namespace hlv::sandbox {

/// Threading of it and of the client: any.
std::shared_ptr<PLVInAppClient> makeProviderClient(const Service::Surroundings& surroundings);

}  // namespace hlv::sandbox
