// What the core's host replies, on its way to an Objective-C app.
//
// Threading: any; a block is called on the thread that replies.
#pragma once

#import <Foundation/Foundation.h>

#include "ObjC/Binding/Blocks.h"
#include "ObjC/Binding/Errors.h"
#include "ObjC/Binding/Strings.h"
#include "ObjC/HostClasses/Records.h"
#include "Values/List.h"

namespace hlv::host_classes {

inline NSString* asObject(const NullableString& string) { return hlv::objc::toNSString(string); }
inline NSError* asObject(const ErrorPtr& error) { return hlv::objc::toNSError(error); }

/// A missing list is nil.
template <class T>
NSArray* asObject(const NullableList<T>& list) {
  if (!list) return nil;
  NSMutableArray* objects = [NSMutableArray arrayWithCapacity:list->size()];
  for (const auto& element : *list) [objects addObject:asObject(element)];
  return objects;
}

/// A completion that hands each result to `block`, in a pool of its own: the host's threads may
/// have none. Nil does nothing.
template <class Block>
auto replyTo(Block block) {
  return [copied = hlv::objc::CopiedBlock<Block>(block)](const auto&... results) {
    if (!copied.block()) return;
    @autoreleasepool {
      copied.block()(asObject(results)...);
    }
  };
}

}  // namespace hlv::host_classes
