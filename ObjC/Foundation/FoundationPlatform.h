// The platform on Foundation: the real main thread and its run loop, and the default notification
// centre.
//
// Threading: any.
#pragma once

#include <memory>
#include <string>

#include "Platform/Platform.h"

namespace hlv::objc {

class FoundationPlatform final : public Platform {
 public:
  FoundationPlatform();
  bool isMainThread() const override;
  std::shared_ptr<Queue> mainQueue() override { return mainQueue_; }
  std::shared_ptr<Queue> makeSerialQueue(Text label) override;
  std::shared_ptr<NotificationCenter> notificationCenter() override { return center_; }

 private:
  const std::shared_ptr<Queue> mainQueue_;
  const std::shared_ptr<NotificationCenter> center_;
};

}  // namespace hlv::objc
