// The notification centre of the default platform. Private to this folder.
#pragma once

#include <memory>
#include <vector>

#include "Platform/NotificationCenter.h"
#include "Values/Mutex.h"

namespace hlv {

/// Threading: as NotificationCenter.
class DefaultNotificationCenter final
    : public NotificationCenter,
      public std::enable_shared_from_this<DefaultNotificationCenter> {
 public:
  std::unique_ptr<Observation> observe(const NullableString& name, Handler handler) override;
  void post(const Notification& notification) override;

 private:
  struct Observer;
  class Entry;
  void remove(const std::shared_ptr<Observer>& observer);

  Mutex mutex_;
  // Of every name, in the order in which they began.
  std::vector<std::shared_ptr<Observer>> observers_ HLV_GUARDED_BY(mutex_);
};

}  // namespace hlv
