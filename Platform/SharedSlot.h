// A shared reference that several threads may read and replace.
#pragma once

#include <cstdlib>
#include <memory>
#include <utility>

#include "Values/Mutex.h"

namespace hlv {

/// What all slots share, so that their code is there once. The library's own: not exported.
class AnySharedSlot {
 protected:
  std::shared_ptr<void> loadAny() const;
  void storeAny(std::shared_ptr<void> value);

 private:
  mutable Mutex mutex_;
  std::shared_ptr<void> value_ HLV_GUARDED_BY(mutex_);
};

/// Threading: any. What is replaced is let go outside the lock, so that a destructor may come back.
template <class T>
class SharedSlot : private AnySharedSlot {
 public:
  std::shared_ptr<T> load() const { return std::static_pointer_cast<T>(loadAny()); }
  void store(std::shared_ptr<T> value) { storeAny(std::move(value)); }
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
