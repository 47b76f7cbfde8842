// Strings, both ways.
//
// Threading: any.
#pragma once

#import <Foundation/Foundation.h>

#include <string>

#include "Values/NullableString.h"

namespace hlv::objc {

/// Nil is a missing string. Leaves no other copy of the characters behind.
NullableString fromNSString(NSString* string);

/// A missing string is nil. Lives as long as its pool.
NSString* toNSString(const NullableString& string);

/// The same, to be released by the caller: for what must not wait for a pool.
NSString* newNSString(const NullableString& string) NS_RETURNS_RETAINED;

}  // namespace hlv::objc
