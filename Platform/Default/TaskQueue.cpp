#include "Platform/Default/TaskQueue.h"

#include <algorithm>
#include <utility>

namespace hlv {

void TaskQueue::post(Block block, std::shared_ptr<Strand> strand) {
  const std::lock_guard lock(mutex_);
  waiting_.push_back({std::move(block), std::move(strand)});
  changed_.notify_one();
}

bool TaskQueue::runOne(Wait wait) {
  std::unique_lock lock(mutex_);
  if (wait == Wait::forBlock) {
    changed_.wait(lock, [&] { return isWoken_ || isClosed_ || next() != waiting_.end(); });
  }
  isWoken_ = false;
  const auto first = next();
  if (isClosed_ || first == waiting_.end()) return false;

  Task turn = std::move(*first);
  waiting_.erase(first);
  ++running_;
  if (turn.strand) turn.strand->isBusy = true;
  lock.unlock();
  const auto finish = [&] {
    turn.block = nullptr;
    lock.lock();
    // No thread is notified that the strand is free: this one is back at once for what waits there.
    if (turn.strand) turn.strand->isBusy = false;
    --running_;
  };
  try {
    turn.block();
  } catch (...) {
    finish();
    throw;
  }
  finish();
  return true;
}

void TaskQueue::wake() {
  const std::lock_guard lock(mutex_);
  isWoken_ = true;
  changed_.notify_one();
}

void TaskQueue::close() {
  const std::lock_guard lock(mutex_);
  isClosed_ = true;
  changed_.notify_all();
}

bool TaskQueue::isIdle() const {
  const std::lock_guard lock(mutex_);
  return waiting_.empty() && running_ == 0;
}

std::list<TaskQueue::Task>::iterator TaskQueue::next() {
  return std::find_if(waiting_.begin(), waiting_.end(),
                      [](const Task& turn) { return !turn.strand || !turn.strand->isBusy; });
}

}  // namespace hlv
