// A shared reference that several threads may read and replace.
#pragma once

#include <cstdlib>
#include <memory>
#include <mutex>
#include <utility>

namespace hlv {

/// Threading: any. What is replaced is let go outside the lock, so that a destructor may come back.
template <class T>
class SharedSlot {
 public:
  std::shared_ptr<T> load() const {
    const std::lock_guard lock(mutex_);
    return value_;
  }

  void store(std::shared_ptr<T> value) {
    const std::lock_guard lock(mutex_);
    value_.swap(value);
    // `value`, the parameter, outlives the lock.
  }

 private:
  mutable std::mutex mutex_;
  std::shared_ptr<T> value_;
};

/// The process's own slot for a `T`. It is emptied when the process exits and never destroyed: a
/// thread that is still at work then finds nothing there, and not something that is gone.
template <class T>
SharedSlot<T>& processSlot() {
  static auto& slot = []() -> SharedSlot<T>& {
    std::atexit([] { processSlot<T>().store(nullptr); });
    return *new SharedSlot<T>;
  }();
  return slot;
}

}  // namespace hlv
