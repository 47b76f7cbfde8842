// Where posted blocks wait for somebody to run them. Private to this folder.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>

#include "Platform/Queue.h"

namespace hlv {

/// Blocks in the order of their posting; the first whose lane is free is the next to run. Queues
/// refer weakly to it, so that it goes with every block that never ran, one that holds its queue
/// included.
///
/// Threading: any. No lock is held while a block runs or is freed.
class BlockLine {
 public:
  /// Of the blocks that share a lane, one runs at a time. One without a lane may always run.
  struct Lane {
    bool isBusy = false;
  };
  enum class Wait { no, forBlock };

  void post(Block block, std::shared_ptr<Lane> lane = nullptr);
  /// Runs the next block and returns whether there was one. What the block throws passes through;
  /// it counts as finished then.
  bool runOne(Wait wait);
  /// Ends one wait, under way or yet to come, without a block.
  void wake();
  /// Ends every wait. No block runs any more.
  void close();
  /// Whether no block waits or runs. A block is freed before it counts as finished.
  bool isIdle() const;

 private:
  struct Turn {
    Block block;
    std::shared_ptr<Lane> lane;
  };
  std::list<Turn>::iterator next();

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::list<Turn> waiting_;
  std::size_t running_ = 0;
  bool isWoken_ = false;
  bool isClosed_ = false;
};

}  // namespace hlv
