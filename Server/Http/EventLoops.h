// The threads that serve all connections: one event loop each.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace hlv::server {

/// No loop waits for anything but its events; what runs on it must not block. Listeners end before
/// their loops.
///
/// Threading: any; `stop` and the destructor on no loop's thread. The threads are named "http-1"
/// and so on.
class EventLoops {
 public:
  explicit EventLoops(unsigned count);
  ~EventLoops();
  EventLoops(const EventLoops&) = delete;
  EventLoops& operator=(const EventLoops&) = delete;

  unsigned count() const;
  /// Runs `task` on one of the loops. Not after `stop`.
  void post(std::function<void()> task);
  /// The same after `delay`.
  void after(std::chrono::milliseconds delay, std::function<void()> task);
  /// Ends the loops and frees what has not run.
  void stop();

  class Impl;
  Impl& impl() const { return *impl_; }

 private:
  const std::unique_ptr<Impl> impl_;
};

}  // namespace hlv::server
