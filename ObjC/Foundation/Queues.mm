#include "ObjC/Foundation/Queues.h"

#include <utility>

#if __has_include(<dispatch/dispatch.h>)

namespace hlv::objc {
namespace {

class DispatchQueue final : public Adapter<Queue, dispatch_queue_t> {
 public:
  using Adapter::Adapter;
  void async(Block block) override {
    dispatch_async(object(), ^{
      @autoreleasepool {
        block();
      }
    });
  }
  Text label() const override {
    return NullableString(dispatch_queue_get_label(object())).value_or("");
  }
};

}  // namespace

std::shared_ptr<Queue> makeMainQueue() { return adapted<DispatchQueue>(dispatch_get_main_queue()); }

std::shared_ptr<Queue> makeSerialQueue(Text label) {
  dispatch_queue_t queue = dispatch_queue_create(label.c_str(), nullptr);
  auto made = adapted<DispatchQueue>(queue);
  dispatch_release(queue);
  return made;
}

std::shared_ptr<Queue> fromSystemQueue(HLVSDKQueue queue) { return adapted<DispatchQueue>(queue); }

}  // namespace hlv::objc

#else

#include "ObjC/Binding/Strings.h"
#include "ObjC/Binding/Target.h"

namespace hlv::objc {
namespace {

/// A block on its way to the main thread, or on an operation queue, which it keeps. What it holds
/// goes when it was run, and not when the system gets to it.
HLVTarget* posted(Block block, NSOperationQueue* queue) {
  return [[[HLVTarget alloc]
      initWithFunction:[block = std::move(block), queue = adapted<Held>(queue)](id) mutable {
        @autoreleasepool {
          std::exchange(block, nullptr)();
        }
      }] autorelease];
}

class MainQueue final : public Queue {
 public:
  void async(Block block) override {
    // A service may reply on a thread that has no pool.
    @autoreleasepool {
      [posted(std::move(block), nil) performSelectorOnMainThread:@selector(call:)
                                                      withObject:nil
                                                   waitUntilDone:NO];
    }
  }
  Text label() const override { return "main"; }
};

class OperationQueue final : public Adapter<Queue, NSOperationQueue*> {
 public:
  using Adapter::Adapter;
  void async(Block block) override {
    @autoreleasepool {
      auto* operation =
          [[[NSInvocationOperation alloc] initWithTarget:posted(std::move(block), object())
                                                selector:@selector(call:)
                                                  object:nil] autorelease];
      [object() addOperation:operation];
    }
  }
  Text label() const override { return fromNSString([object() name]).value_or(""); }
};

}  // namespace

std::shared_ptr<Queue> makeMainQueue() { return std::make_shared<MainQueue>(); }

std::shared_ptr<Queue> makeSerialQueue(Text label) {
  NSOperationQueue* queue = [[[NSOperationQueue alloc] init] autorelease];
  [queue setMaxConcurrentOperationCount:1];
  [queue setName:toNSString(label)];
  return adapted<OperationQueue>(queue);
}

std::shared_ptr<Queue> fromSystemQueue(HLVSDKQueue queue) { return adapted<OperationQueue>(queue); }

}  // namespace hlv::objc

#endif
