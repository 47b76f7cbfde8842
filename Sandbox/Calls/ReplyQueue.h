// The threads that the two services reply on. Private to the sandbox.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace hlv::sandbox {

/// The backend replies on the thread "service-1", the provider on "service-2".
enum class ServiceThread { backend = 0, provider = 1 };

/// A reply that is ready to go.
struct PreparedReply {
  std::chrono::milliseconds delay{0};
  std::function<void()> deliver;
};

/// Serves calls in the order in which they were made, one at a time across both services, so that
/// one timeline reads the same on every machine. A delayed reply goes to the end of that order
/// when its time has come and the main queue has turned once more: calls that the main thread is
/// about to make are served first.
///
/// Threading: any; the last reference may go away on a service's own thread. No thread runs before
/// the first call. What still waits is freed unanswered with this object.
class ReplyQueue {
 public:
  /// Does what a call asks for, on its service's thread; no result means that no reply will come.
  using Work = std::function<std::optional<PreparedReply>()>;

  ReplyQueue();
  ~ReplyQueue();
  ReplyQueue(const ReplyQueue&) = delete;
  ReplyQueue& operator=(const ReplyQueue&) = delete;

  void call(ServiceThread thread, Work work);
  /// Whether every call got its reply, and its callback freed.
  bool isQuiet() const;

 private:
  struct State;
  void start();

  const std::shared_ptr<State> state_;
  std::once_flag started_;
  std::vector<std::thread> threads_;
};

}  // namespace hlv::sandbox
