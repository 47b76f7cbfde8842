// Runs something once, and can be set back.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "Platform/Export.h"

namespace hlv {

/// The run-once guard. Unlike the standard library's it can be reset, and it holds no lock while
/// the body runs: a body that comes back to its own guard returns at once instead of deadlocking.
///
/// Threading: any; other threads wait until the body has returned. `reset` must not race with
/// `run`.
class HLV_EXPORT Once {
 public:
  void run(const std::function<void()>& body);
  void reset();

 private:
  enum class State { idle, running, done };

  std::mutex mutex_;
  std::condition_variable finished_;
  State state_ = State::idle;
  std::thread::id runner_;
};

}  // namespace hlv
