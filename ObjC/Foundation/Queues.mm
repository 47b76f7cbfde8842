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

/// A block on its way to the main thread, or on an operation queue, which it keeps.
@interface HLVPostedBlock : NSObject {
 @private
  hlv::Block* _block;
  NSOperationQueue* _queue;
}
- (instancetype)initWithBlock:(hlv::Block)block queue:(NSOperationQueue*)queue;
- (void)run;
@end

@implementation HLVPostedBlock

- (instancetype)initWithBlock:(hlv::Block)block queue:(NSOperationQueue*)queue {
  if ((self = [super init])) {
    _block = new hlv::Block(std::move(block));
    _queue = [queue retain];
  }
  return self;
}

- (void)dealloc {
  delete _block;
  [_queue release];
  [super dealloc];
}

- (void)run {
  @autoreleasepool {
    (*_block)();
    // What it held goes now, and not when the system gets to it.
    *_block = nullptr;
  }
}

@end

namespace hlv::objc {
namespace {

class MainQueue final : public Queue {
 public:
  void async(Block block) override {
    // A service may reply on a thread that has no pool.
    @autoreleasepool {
      auto* posted = [[[HLVPostedBlock alloc] initWithBlock:std::move(block)
                                                      queue:nil] autorelease];
      [posted performSelectorOnMainThread:@selector(run) withObject:nil waitUntilDone:NO];
    }
  }
  Text label() const override { return "main"; }
};

class OperationQueue final : public Adapter<Queue, NSOperationQueue*> {
 public:
  using Adapter::Adapter;
  void async(Block block) override {
    @autoreleasepool {
      auto* posted = [[[HLVPostedBlock alloc] initWithBlock:std::move(block)
                                                      queue:object()] autorelease];
      [object() addOperation:[[[NSInvocationOperation alloc] initWithTarget:posted
                                                                   selector:@selector(run)
                                                                     object:nil] autorelease]];
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
