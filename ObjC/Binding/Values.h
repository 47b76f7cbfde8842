// Dictionaries of plain values, both ways.
//
// Threading: any.
#pragma once

#import <Foundation/Foundation.h>

#include "Platform/Notification.h"
#include "Values/Value.h"

namespace hlv::objc {

/// Numbers are read, whole ones as integers and others as fractions; everything else passes through
/// the core as the object it is. Keys that are no strings are left out.
Dictionary fromNSDictionary(NSDictionary* dictionary);

/// Immutable. Lives as long as its pool.
NSDictionary* toNSDictionary(const Dictionary& dictionary);

Notification fromNSNotification(NSNotification* notification);

}  // namespace hlv::objc
