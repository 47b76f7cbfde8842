// The threads that serial queues share. Private to this folder.
#pragma once

#include <functional>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "Platform/Default/TaskQueue.h"
#include "Values/Mutex.h"

namespace hlv {

/// Two threads, so that one slow block does not hold up every queue; none before the first block.
///
/// Threading: any; it may be destroyed on one of its own threads.
class WorkerThreads {
 public:
  /// `finished` is called after every block, on the block's thread.
  explicit WorkerThreads(std::function<void()> finished) : finished_(std::move(finished)) {}
  ~WorkerThreads();

  void post(Block block, std::shared_ptr<TaskQueue::Strand> strand);
  /// Waits for the blocks that run; no other runs any more.
  void end();
  bool isIdle() const { return tasks_->isIdle(); }

 private:
  // A thread on which this object ends goes on without it to the end of its block.
  const std::shared_ptr<TaskQueue> tasks_ = std::make_shared<TaskQueue>();
  const std::function<void()> finished_;
  Mutex mutex_;
  bool hasEnded_ HLV_GUARDED_BY(mutex_) = false;
  std::vector<std::thread> threads_ HLV_GUARDED_BY(mutex_);
};

}  // namespace hlv
