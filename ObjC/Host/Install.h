// Puts the Objective-C world under the core.
#pragma once

namespace hlv::objc {

/// Installs the host that is made of the host SDK's classes, and the platform that is made of
/// Foundation, unless a host is installed already. Every class of the kit does so before its first
/// message.
///
/// Threading: any; the first call does it.
void install();

}  // namespace hlv::objc
