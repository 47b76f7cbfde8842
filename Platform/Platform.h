// The kit's only window on the platform.
//
// Threading: install a platform before the kit is enabled; every other member may be called from
// any thread.
#pragma once

#include <memory>

#include "Platform/NotificationCenter.h"
#include "Platform/Queue.h"
#include "Values/Export.h"
#include "Values/Text.h"

namespace hlv {

/// Every source of order that the kit has: threads, queues and notifications. The kit makes no
/// thread, timer or queue behind this object's back, so whoever installs a platform owns the order
/// of everything.
///
/// The main *thread* and the main *queue* are different questions: a completion is called directly
/// on the main thread, and is otherwise posted to the main queue.
class HLV_EXPORT Platform {
 public:
  Platform() = default;
  Platform(const Platform&) = delete;
  Platform& operator=(const Platform&) = delete;
  virtual ~Platform() = default;

  /// The installed platform, or the default one of this system. Never null.
  static std::shared_ptr<Platform> current();

  /// Replaces the platform; null brings back the default one.
  static void install(std::shared_ptr<Platform> platform);

  /// Whether the calling thread is the main thread.
  virtual bool isMainThread() const = 0;
  /// Runs its blocks on the main thread. Never null.
  virtual std::shared_ptr<Queue> mainQueue() = 0;
  /// A new serial queue; starts no thread before the first block is posted. Never null.
  [[nodiscard]] virtual std::shared_ptr<Queue> makeSerialQueue(Text label) = 0;
  /// The default notification centre. Never null.
  virtual std::shared_ptr<NotificationCenter> notificationCenter() = 0;
};

}  // namespace hlv
