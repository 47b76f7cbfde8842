// The platform on Linux: a main queue that the app pumps, and serial queues on shared threads.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "Platform/Platform.h"
#include "Values/Export.h"
#include "Values/Text.h"

namespace hlv {

/// Until the app says otherwise, the main thread is the one that the process started on. Nothing
/// runs on the main queue before the main thread pumps it, with `runPending` from a loop of its own
/// or with `runUntil`. Serial queues share two threads, which start when the first block is posted
/// to any of them.
///
/// Threading: `runPending` and `runUntil` on the main thread; everything else on any thread.
class HLV_EXPORT DefaultPlatform final : public Platform {
 public:
  /// The one that is used while no other platform is installed. When the process exits, its serial
  /// queues stop after the blocks that run; it is never destroyed, as other threads may still post.
  static std::shared_ptr<DefaultPlatform> shared();
  /// A platform with queues, threads and observers of its own.
  [[nodiscard]] static std::shared_ptr<DefaultPlatform> make();
  ~DefaultPlatform() override;

  bool isMainThread() const override;
  std::shared_ptr<Queue> mainQueue() override;
  std::shared_ptr<Queue> makeSerialQueue(Text label) override;
  std::shared_ptr<NotificationCenter> notificationCenter() override;

  /// Makes the calling thread the main thread.
  void adoptMainThread();

  /// Runs the blocks that wait on the main queue, those they post included, and returns how many
  /// ran. Never waits. What a block throws passes through to the caller; the blocks behind it stay.
  std::size_t runPending();

  /// Pumps the main queue and waits for more until `done` returns true. It is asked before the
  /// first wait and again after every block of any queue; an empty block on the main queue makes it
  /// ask. A block that it runs may call it, or `runPending`, again.
  void runUntil(const std::function<bool()>& done);

  /// For an app that owns its loop: `hook` is called after each post to the main queue, on the
  /// posting thread, so that the loop can wake up and call `runPending`. Empty removes it.
  void setPostHook(std::function<void()> hook);

  /// Whether no block waits or runs on any queue of this platform.
  bool isIdle() const;

 private:
  struct State;
  DefaultPlatform();

  const std::unique_ptr<State> state_;
};

}  // namespace hlv
