// What ends a call into the sandbox before its time.
//
// Threading: any.
#pragma once

#include <functional>
#include <string>

namespace hlv::sandbox::objc {

/// Runs `work` and returns the sentence of the failure which ended it; empty when all went well.
/// Failures are caught here and nowhere else: where the runtime is GCC's, what is compiled as
/// Objective-C++ lets them through but cannot catch them.
std::string problemOf(const std::function<void()>& work);

}  // namespace hlv::sandbox::objc
