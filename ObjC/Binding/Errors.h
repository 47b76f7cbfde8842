// Errors, both ways. An error that passes through stays the same object.
//
// Threading: any.
#pragma once

#import <Foundation/Foundation.h>

#include "Values/Error.h"

namespace hlv::objc {

ErrorPtr fromNSError(NSError* error);

/// An error that C++ code made becomes one with its domain, code and texts. Lives as long as its
/// pool.
NSError* toNSError(const ErrorPtr& error);

}  // namespace hlv::objc
