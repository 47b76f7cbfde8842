// Where the system has dispatch queues.
#include "ObjC/Foundation/Queues.h"

#if __has_include(<dispatch/dispatch.h>)

#include <utility>

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

#endif
