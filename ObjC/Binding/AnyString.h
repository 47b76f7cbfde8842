// Strings of any code units.
#pragma once

#import <Foundation/Foundation.h>

#include <string>

namespace hlv::objc {

/// Also where Foundation's own strings refuse half a surrogate pair or drop a mark of byte order.
/// To be released by the caller.
///
/// Threading: any.
NSString* newStringOfUnits(const std::u16string& units) NS_RETURNS_RETAINED;

}  // namespace hlv::objc
