// The default notification centre, as the core observes it.
//
// Threading: any; handlers run on the thread that posts.
#pragma once

#include <memory>

#include "Platform/NotificationCenter.h"

namespace hlv::objc {

class FoundationNotificationCenter final : public NotificationCenter {
 public:
  std::unique_ptr<Observation> observe(const NullableString& name, Handler handler) override;
  void post(const Notification& notification) override;
};

}  // namespace hlv::objc
