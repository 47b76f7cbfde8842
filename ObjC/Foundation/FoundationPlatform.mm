#include "ObjC/Foundation/FoundationPlatform.h"

#import <Foundation/Foundation.h>

#include <utility>

#include "ObjC/Binding/Strings.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Foundation/Queues.h"

namespace hlv::objc {
namespace {

class FoundationObservation final : public Observation {
 public:
  FoundationObservation(NSString* name, NotificationCenter::Handler handler) {
    const auto kept = std::make_shared<NotificationCenter::Handler>(std::move(handler));
    observer_ = [[[NSNotificationCenter defaultCenter]
        addObserverForName:name
                    object:nil
                     queue:nil
                usingBlock:^(NSNotification* notification) {
                  // The observation may end while its handler runs.
                  const auto running = kept;
                  (*running)(fromNSNotification(notification));
                }] retain];
  }
  ~FoundationObservation() override {
    [[NSNotificationCenter defaultCenter] removeObserver:observer_];
    [observer_ release];
  }

 private:
  id observer_;
};

class FoundationNotificationCenter final : public NotificationCenter {
 public:
  std::unique_ptr<Observation> observe(const NullableString& name, Handler handler) override {
    if (!name) return nullptr;
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

std::shared_ptr<Platform> makeFoundationPlatform() {
  return std::make_shared<FoundationPlatform>();
}

}  // namespace hlv::objc
