// The host's constants, which Objective-C wants to know while it compiles.
//
// Threading: any.
#pragma once

#include <string>

namespace hlv::sandbox::objc {

/// Compares each constant with the sandbox's own text. Returns one plain sentence that names one
/// which differs, or an empty string.
std::string problemOfConstants();

}  // namespace hlv::sandbox::objc
