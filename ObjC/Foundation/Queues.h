// The system's queues as the core posts to them, and the core's as the system names them.
//
// Threading: any.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKQueue.h>

#include <memory>
#include <string>

#include "ObjC/Binding/Held.h"
#include "Platform/Queue.h"

namespace hlv::objc {

/// Dispatch queues where the system has them; otherwise the main thread's run loop, and operation
/// queues that run one operation at a time.
std::shared_ptr<Queue> makeMainQueue();
std::shared_ptr<Queue> makeSerialQueue(Text label);

/// A queue of the app's own; nil is null.
std::shared_ptr<Queue> fromSystemQueue(HLVSDKQueue queue);
/// The very queue that a core's queue posts to; nil for another kind. Lives as long as its pool.
inline HLVSDKQueue toSystemQueue(const std::shared_ptr<Queue>& queue) {
  return originalOf(dynamic_cast<const Held*>(queue.get()));
}

}  // namespace hlv::objc
