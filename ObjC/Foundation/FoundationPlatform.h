// The platform on Foundation: the real main thread and its run loop, and the default notification
// centre.
//
// Threading: any.
#pragma once

#include <memory>

#include "Platform/Platform.h"

namespace hlv::objc {

std::shared_ptr<Platform> makeFoundationPlatform();

}  // namespace hlv::objc
