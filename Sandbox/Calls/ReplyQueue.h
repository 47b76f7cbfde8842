// The thread that the two services reply on. Private to the sandbox.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace hlv::sandbox {

/// What the thread is called meanwhile: "service-1" for the backend, "service-2" for the provider.
enum class ServiceThread { backend, provider };

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
/// Threading: any; the last reference may go away on the services' own thread, which does not run
/// before the first call. What still waits is freed unanswered with this object.
class ReplyQueue {
 public:
  /// Does what a call asks for, on the thread; no result means that no reply will come.
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

  const std::shared_ptr<State> state_;
  std::once_flag started_;
  std::thread thread_;
};

}  // namespace hlv::sandbox
