// Where work is posted.
#pragma once

#include <functional>

#include "Values/Export.h"
#include "Values/Text.h"

namespace hlv {

using Block = std::function<void()>;

/// A serial queue of blocks: first in, first out, one at a time.
///
/// Implementations must
/// - take a block from any thread, return without running it, and run it once;
/// - run a block that is posted by a running block after the blocks posted before it;
/// - see that all a block wrote is seen by the next block;
/// - let what a block throws pass through to whoever runs the queue, and go on with the next block
///   afterwards. On a thread of the queue's own there is nobody, and the process terminates;
/// - allow the last reference to a queue to go away on any thread, in a block of its own included.
class HLV_EXPORT Queue {
 public:
  Queue() = default;
  Queue(const Queue&) = delete;
  Queue& operator=(const Queue&) = delete;
  virtual ~Queue() = default;

  virtual void async(Block block) = 0;
  /// The name that the queue was made with.
  virtual Text label() const = 0;
};

}  // namespace hlv
