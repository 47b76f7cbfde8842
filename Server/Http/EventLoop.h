// One event loop. Private to the listener.
#pragma once

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <chrono>
#include <cstddef>
#include <memory>
#include <thread>
#include <vector>

#include "Server/Http/EventLoops.h"

namespace hlv::server {

using LoopExecutor = boost::asio::io_context::executor_type;
using LoopTimer = boost::asio::basic_waitable_timer<
    std::chrono::steady_clock, boost::asio::wait_traits<std::chrono::steady_clock>, LoopExecutor>;

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

class EventLoops::Impl {
 public:
  /// In turn.
  EventLoop& next() { return loops[next_++ % loops.size()]; }

  std::vector<EventLoop> loops;

 private:
  std::atomic<std::size_t> next_{0};
};

}  // namespace hlv::server
