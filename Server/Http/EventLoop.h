// One event loop. Private to the listener.
#pragma once

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <chrono>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "Server/Http/EventLoops.h"

namespace hlv::server {

using LoopExecutor = boost::asio::io_context::executor_type;
using LoopTimer = boost::asio::basic_waitable_timer<
    std::chrono::steady_clock, boost::asio::wait_traits<std::chrono::steady_clock>, LoopExecutor>;

/// The way into a loop from other threads, which outlives it.
///
/// Threading: any.
class LoopEntry {
 public:
  explicit LoopEntry(boost::asio::io_context& context) : context_(&context) {}

  /// Drops `task` once the loop has ended.
  template <class Task>
  void post(Task task) {
    const std::lock_guard lock(mutex_);
    if (context_) boost::asio::post(*context_, std::move(task));
  }
  bool isThisThread() const { return std::this_thread::get_id() == thread_; }

 private:
  friend class EventLoop;
  std::mutex mutex_;
  boost::asio::io_context* context_;
  std::atomic<std::thread::id> thread_;
};

/// Threading: `executor` and `entry` on any thread.
class EventLoop {
 public:
  explicit EventLoop(std::size_t index);

  boost::asio::io_context& context() { return *context_; }
  const std::shared_ptr<LoopEntry>& entry() const { return entry_; }
  std::size_t index() const { return index_; }
  /// Ends the thread after the task that it runs.
  void end();
  /// Frees what has not run, once it has ended.
  void clear() { context_.reset(); }

 private:
  void run();

  const std::size_t index_;
  // For one thread that runs it.
  std::unique_ptr<boost::asio::io_context> context_ = std::make_unique<boost::asio::io_context>(1);
  const std::shared_ptr<LoopEntry> entry_ = std::make_shared<LoopEntry>(*context_);
  std::thread thread_;
};

class EventLoops::Impl {
 public:
  /// In turn.
  EventLoop& next() { return *loops[next_++ % loops.size()]; }

  std::vector<std::unique_ptr<EventLoop>> loops;

 private:
  std::atomic<std::size_t> next_{0};
};

}  // namespace hlv::server
