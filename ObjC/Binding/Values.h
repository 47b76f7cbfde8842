// Dictionaries of plain values, and errors, both ways.
//
// Threading: any.
#pragma once

#import <Foundation/Foundation.h>

#include "Platform/Notification.h"
#include "Values/Error.h"
#include "Values/Value.h"

namespace hlv::objc {

/// An error that passes through stays the same object.
ErrorPtr fromNSError(NSError* error);

/// An error that C++ code made becomes one with its domain, code and texts. Lives as long as its
/// pool.
NSError* toNSError(const ErrorPtr& error);

/// Whole numbers are read as integers and others as fractions. What is no string, number, array or
/// dictionary passes through the core as the object it is. Keys that are no strings are left out.
Dictionary fromNSDictionary(NSDictionary* dictionary);

/// Immutable. Lives as long as its pool.
NSDictionary* toNSDictionary(const Dictionary& dictionary);

Notification fromNSNotification(NSNotification* notification);

}  // namespace hlv::objc
