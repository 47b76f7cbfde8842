// Lines of an Objective-C app on their way to a logger of the sandbox.
//
// Threading: any.
#pragma once

#import <Foundation/Foundation.h>

#include <cstdarg>
#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"

namespace hlv::sandbox::objc {

/// Renders the line as Foundation does, and leaves the masking of card numbers to the logger. A
/// null logger logs nothing.
void writeLine(const std::shared_ptr<HLVSDKLogger>& logger, NSInteger level, const char* path,
               NSInteger line, const char* function, NSString* format, va_list arguments);

}  // namespace hlv::sandbox::objc
