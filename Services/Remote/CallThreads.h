// The threads on which remote calls wait for their answers. Private to the services.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace hlv::services {

/// Several, so that an answer which does not come holds up no other for long; none before the first
/// call. Calls may end in any order.
///
/// Threading: any; it may be destroyed on one of its own threads. Calls that have not begun then
/// are freed.
class CallThreads {
 public:
  CallThreads();
  ~CallThreads();
  CallThreads(const CallThreads&) = delete;
  CallThreads& operator=(const CallThreads&) = delete;

  void run(std::function<void()> call);
  /// Whether every call has ended and is freed.
  bool isQuiet() const;

 private:
  struct State;

  const std::shared_ptr<State> state_;
  std::once_flag started_;
  std::vector<std::thread> threads_;
};

}  // namespace hlv::services
