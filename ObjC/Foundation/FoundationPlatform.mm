#include "ObjC/Foundation/FoundationPlatform.h"

#import <Foundation/Foundation.h>

#include <utility>

#include "ObjC/Foundation/FoundationNotificationCenter.h"
#include "ObjC/Foundation/Queues.h"

namespace hlv::objc {

FoundationPlatform::FoundationPlatform()
    : mainQueue_(makeMainQueue()), center_(std::make_shared<FoundationNotificationCenter>()) {}

bool FoundationPlatform::isMainThread() const { return [NSThread isMainThread]; }

std::shared_ptr<Queue> FoundationPlatform::makeSerialQueue(Text label) {
  return objc::makeSerialQueue(std::move(label));
}

}  // namespace hlv::objc
