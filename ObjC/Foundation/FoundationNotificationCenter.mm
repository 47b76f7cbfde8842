#include "ObjC/Foundation/FoundationNotificationCenter.h"

#import <Foundation/Foundation.h>

#include <utility>

#include "ObjC/Binding/Strings.h"
#include "ObjC/Binding/Values.h"

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

}  // namespace

std::unique_ptr<Observation> FoundationNotificationCenter::observe(const NullableString& name,
                                                                   Handler handler) {
  if (!name) return nullptr;
  return std::make_unique<FoundationObservation>(toNSString(name), std::move(handler));
}

void FoundationNotificationCenter::post(const Notification& notification) {
  if (!notification.name) return;
  [[NSNotificationCenter defaultCenter] postNotificationName:toNSString(notification.name)
                                                      object:nil
                                                    userInfo:toNSDictionary(notification.userInfo)];
}

}  // namespace hlv::objc
