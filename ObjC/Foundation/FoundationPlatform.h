// The platform on Foundation: the real main thread and its run loop, and the default notification
// centre.
//
// Threading: any.
#pragma once

#import <Foundation/Foundation.h>

#include <memory>

#include "Platform/Platform.h"

namespace hlv::objc {

std::shared_ptr<Platform> makeFoundationPlatform();

/// Sends `handler` to `observer` for each notification of the name, whoever posts it; without a
/// name for none. The default centre does not keep the observer.
void observe(id observer, SEL handler, NSString* name);

/// Where the runtime of blocks does not know that of classes, a copied block would not keep the
/// objects that it captures. Whatever calls this brings along the two functions that make it do so.
/// Elsewhere there is nothing to bring.
void keepCapturedObjects();

}  // namespace hlv::objc
