// Joins parallel requests.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "Platform/Queue.h"
#include "Values/Mutex.h"

namespace hlv {

/// Posts blocks to queues when everything that entered has left.
///
/// - What a thread wrote before it left is seen by the blocks.
/// - Leaving more often than entering does nothing, and a block is posted once only.
/// - A group that never empties is freed with the blocks it holds. To make that possible, a block
///   does not refer to its own group.
///
/// Threading: any. No lock is held while a block is posted.
class Group {
 public:
  Group() = default;
  Group(const Group&) = delete;
  Group& operator=(const Group&) = delete;

  void enter();
  void leave();
  /// Posts `block` to `queue` when the group is empty, which may be now.
  void notify(std::shared_ptr<Queue> queue, Block block);

 private:
  struct Waiter {
    std::shared_ptr<Queue> queue;
    Block block;
  };

  Mutex mutex_;
  std::size_t entered_ HLV_GUARDED_BY(mutex_) = 0;
  std::vector<Waiter> waiters_ HLV_GUARDED_BY(mutex_);
};

}  // namespace hlv
