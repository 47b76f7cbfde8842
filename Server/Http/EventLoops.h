// The threads that serve all connections: one event loop each.
#pragma once

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace hlv::sandbox::server {

using LoopExecutor = boost::asio::io_context::executor_type;
using LoopTimer = boost::asio::steady_timer::rebind_executor<LoopExecutor>::other;

/// Completes a coroutine's operation with its error in `error`.
inline auto into(boost::system::error_code& error) {
  return boost::asio::redirect_error(boost::asio::use_awaitable_t<LoopExecutor>(), error);
}

struct EventLoop {
  std::size_t index = 0;
  /// For the one thread that runs it. Whoever may come after its end holds it weakly.
  std::shared_ptr<boost::asio::io_context> context = std::make_shared<boost::asio::io_context>(1);
  std::thread thread = {};
};

/// No loop waits for anything but its events; what runs on it must not block. Listeners end before
/// their loops.
///
/// Threading: any; `stop` and the destructor on no loop's thread. The threads are named "http-1"
/// and so on.
class EventLoops {
 public:
  explicit EventLoops(unsigned count);
  ~EventLoops() { stop(); }
  EventLoops(const EventLoops&) = delete;
  EventLoops& operator=(const EventLoops&) = delete;

  std::vector<EventLoop>& all() { return loops_; }
  /// In turn. Not after `stop`.
  EventLoop& next() { return loops_[next_++ % loops_.size()]; }
  /// Runs `task` on one of the loops after `delay`. Not after `stop`.
  void after(std::chrono::milliseconds delay, std::function<void()> task);
  /// Ends the loops and frees what has not run.
  void stop();

 private:
  std::vector<EventLoop> loops_;
  std::atomic<std::size_t> next_{0};
};

}  // namespace hlv::sandbox::server
