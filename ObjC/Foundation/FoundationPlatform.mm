#include "ObjC/Foundation/FoundationPlatform.h"

#import <Foundation/Foundation.h>

#include <utility>

#include "ObjC/Binding/Strings.h"
#include "ObjC/Binding/Target.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Foundation/Queues.h"

namespace hlv::objc {
namespace {

class FoundationObservation final : public Observation {
 public:
  FoundationObservation(NSString* name, NotificationCenter::Handler handler)
      : target_([[HLVTarget alloc]
            initWithFunction:[handler = std::move(handler)](NSNotification* notification) {
              handler(fromNSNotification(notification));
            }]) {
    observe(target_, @selector(call:), name);
  }
  ~FoundationObservation() override {
    [[NSNotificationCenter defaultCenter] removeObserver:target_];
    [target_ release];
  }

 private:
  HLVTarget* const target_;
};

class FoundationNotificationCenter final : public NotificationCenter {
 public:
  std::unique_ptr<Observation> observe(const NullableString& name, Handler handler) override {
    return std::make_unique<FoundationObservation>(toNSString(name), std::move(handler));
  }
  void post(const Notification& notification) override {
    if (!notification.name) return;
    [[NSNotificationCenter defaultCenter]
        postNotificationName:toNSString(notification.name)
                      object:nil
                    userInfo:toNSDictionary(notification.userInfo)];
  }
};

class FoundationPlatform final : public Platform {
 public:
  bool isMainThread() const override { return [NSThread isMainThread]; }
  std::shared_ptr<Queue> mainQueue() override { return mainQueue_; }
  std::shared_ptr<Queue> makeSerialQueue(Text label) override {
    return objc::makeSerialQueue(std::move(label));
  }
  std::shared_ptr<NotificationCenter> notificationCenter() override { return center_; }

 private:
  const std::shared_ptr<Queue> mainQueue_ = makeMainQueue();
  const std::shared_ptr<NotificationCenter> center_ =
      std::make_shared<FoundationNotificationCenter>();
};

}  // namespace

void observe(id observer, SEL handler, NSString* name) {
  // Without a name an observer gets everything.
  if (!name) return;
  [[NSNotificationCenter defaultCenter] addObserver:observer selector:handler name:name object:nil];
}

std::shared_ptr<Platform> makeFoundationPlatform() {
  return std::make_shared<FoundationPlatform>();
}

}  // namespace hlv::objc
