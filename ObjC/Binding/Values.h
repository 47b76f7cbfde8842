// Dictionaries of plain values, both ways.
//
// Threading: any.
#pragma once

#import <Foundation/Foundation.h>

#include "Platform/Notification.h"
#include "Values/Value.h"

namespace hlv::objc {

/// Whole numbers are read as integers and others as fractions. What is no string, number, array or
/// dictionary passes through the core as the object it is. Keys that are no strings are left out.
Dictionary fromNSDictionary(NSDictionary* dictionary);

/// Immutable. Lives as long as its pool.
NSDictionary* toNSDictionary(const Dictionary& dictionary);

Notification fromNSNotification(NSNotification* notification);

}  // namespace hlv::objc
