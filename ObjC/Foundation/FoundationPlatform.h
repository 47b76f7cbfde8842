// The platform on Foundation: the real main thread and its run loop, and the default notification
// centre.
//
// Threading: any.
#pragma once

#include <memory>

#include "Platform/Platform.h"

namespace hlv::objc {

std::shared_ptr<Platform> makeFoundationPlatform();

/// Where the runtime of blocks does not know that of classes, a copied block would not keep the
/// objects that it captures. Whatever calls this brings along the two functions that make it do so.
/// Elsewhere there is nothing to bring.
void keepCapturedObjects();

}  // namespace hlv::objc
