// Where posted blocks wait for somebody to run them. Private to this folder.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>

#include "Platform/Queue.h"

namespace hlv {

/// Blocks in the order of their posting; the first whose strand is free is the next to run. Queues
/// refer weakly to it, so that it goes with every block that never ran, one that holds its queue
/// included.
///
/// Threading: any. No lock is held while a block runs or is freed.
class TaskQueue {
 public:
  /// Of the blocks that share a strand, one runs at a time. One without a strand may always run.
  struct Strand {
    bool isBusy = false;
  };
  enum class Wait { no, forBlock };

  void post(Block block, std::shared_ptr<Strand> strand = nullptr);
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
  struct Task {
    Block block;
    std::shared_ptr<Strand> strand;
  };
  std::list<Task>::iterator next();

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::list<Task> waiting_;
  std::size_t running_ = 0;
  bool isWoken_ = false;
  bool isClosed_ = false;
};

}  // namespace hlv
