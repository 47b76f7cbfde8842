// Puts the Objective-C world under the core.
#pragma once

#include "Host/HLVSDKCoreKit/HLVSDKConstants.h"

namespace hlv::objc {

/// Installs the host that is made of the host SDK's classes, and the platform that is made of
/// Foundation, unless a host is installed already. Every class of the kit does so before its first
/// message.
///
/// Threading: any; the first call does it.
void install();

/// The texts of the host SDK's constants, as they are now.
HLVSDKConstants frameworkConstants();

}  // namespace hlv::objc
