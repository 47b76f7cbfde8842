// The texts of the sandbox's host. Private to the sandbox of both languages.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"

namespace hlv::sandbox {

/// Threading: any. Never null.
std::shared_ptr<const HLVSDKConstants> sandboxConstants();

}  // namespace hlv::sandbox
