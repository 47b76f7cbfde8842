// Runs something once, and can be set back.
#pragma once

#include <functional>
#include <mutex>

namespace hlv {

/// The run-once guard. Unlike the standard library's it can be reset, and a body that comes back to
/// its own guard returns at once instead of deadlocking.
///
/// Threading: any; other threads wait until the body has returned.
class Once {
 public:
  void run(const std::function<void()>& body);
  void reset();

 private:
  std::recursive_mutex mutex_;
  bool hasBegun_ = false;
};

}  // namespace hlv
