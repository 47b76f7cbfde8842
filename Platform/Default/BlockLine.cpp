#include "Platform/Default/BlockLine.h"

#include <algorithm>
#include <utility>

namespace hlv {

void BlockLine::post(Block block, std::shared_ptr<Lane> lane) {
  const std::lock_guard lock(mutex_);
  waiting_.push_back({std::move(block), std::move(lane)});
  changed_.notify_one();
}

bool BlockLine::runOne(Wait wait) {
  std::unique_lock lock(mutex_);
  if (wait == Wait::forBlock) {
    changed_.wait(lock, [&] { return isWoken_ || isClosed_ || next() != waiting_.end(); });
  }
  isWoken_ = false;
  const auto first = next();
  if (isClosed_ || first == waiting_.end()) return false;

  Turn turn = std::move(*first);
  waiting_.erase(first);
  ++running_;
  if (turn.lane) turn.lane->isBusy = true;
  lock.unlock();
  const auto finish = [&] {
    turn.block = nullptr;
    lock.lock();
    // No thread is notified that the lane is free: this one is back at once for what waits there.
    if (turn.lane) turn.lane->isBusy = false;
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

void BlockLine::wake() {
  const std::lock_guard lock(mutex_);
  isWoken_ = true;
  changed_.notify_one();
}

void BlockLine::close() {
  const std::lock_guard lock(mutex_);
  isClosed_ = true;
  changed_.notify_all();
}

bool BlockLine::isIdle() const {
  const std::lock_guard lock(mutex_);
  return waiting_.empty() && running_ == 0;
}

std::list<BlockLine::Turn>::iterator BlockLine::next() {
  return std::find_if(waiting_.begin(), waiting_.end(),
                      [](const Turn& turn) { return !turn.lane || !turn.lane->isBusy; });
}

}  // namespace hlv
