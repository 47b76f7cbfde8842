#include "ObjC/Foundation/FoundationPlatform.h"

#import <Foundation/Foundation.h>

#include <utility>

#include "ObjC/Binding/Strings.h"
#include "ObjC/Binding/Values.h"
#include "ObjC/Foundation/Queues.h"

/// Observes one name for the core.
@interface HLVNotificationListener : NSObject {
 @private
  hlv::NotificationCenter::Handler* _handler;
}
- (instancetype)initWithHandler:(hlv::NotificationCenter::Handler)handler;
- (void)receive:(NSNotification*)notification;
@end

@implementation HLVNotificationListener

- (instancetype)initWithHandler:(hlv::NotificationCenter::Handler)handler {
  if ((self = [super init])) {
    _handler = new hlv::NotificationCenter::Handler(std::move(handler));
  }
  return self;
}

- (void)dealloc {
  delete _handler;
  [super dealloc];
}

- (void)receive:(NSNotification*)notification {
  // The observation may end while its handler runs.
  [self retain];
  (*_handler)(hlv::objc::fromNSNotification(notification));
  [self release];
}

@end

namespace hlv::objc {
namespace {

class FoundationObservation final : public Observation {
 public:
  FoundationObservation(NSString* name, NotificationCenter::Handler handler)
      : listener_([[HLVNotificationListener alloc] initWithHandler:std::move(handler)]) {
    [[NSNotificationCenter defaultCenter] addObserver:listener_
                                             selector:@selector(receive:)
                                                 name:name
                                               object:nil];
  }
  ~FoundationObservation() override {
    [[NSNotificationCenter defaultCenter] removeObserver:listener_];
    [listener_ release];
  }

 private:
  HLVNotificationListener* const listener_;
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
