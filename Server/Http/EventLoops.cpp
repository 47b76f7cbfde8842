#include "Server/Http/EventLoops.h"

#include <pthread.h>

#include <algorithm>
#include <exception>
#include <string>

#include "Server/Http/EventLoop.h"

namespace hlv::server {

namespace asio = boost::asio;

EventLoop::EventLoop(std::size_t index) : index_(index) {
  thread_ = std::thread([this] { run(); });
}

void EventLoop::run() {
  ::pthread_setname_np(::pthread_self(), ("http-" + std::to_string(index_ + 1)).c_str());
  entry_->thread_ = std::this_thread::get_id();
  const auto work = asio::make_work_guard(*context_);
  while (!context_->stopped()) {
    try {
      context_->run();
    } catch (const std::exception&) {
      // Ends the connection whose memory ran out, and no other.
    }
  }
}

void EventLoop::end() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(entry_->mutex_);
    entry_->context_ = nullptr;
  }
  context_->stop();
  thread_.join();
}

EventLoops::EventLoops(unsigned count) : impl_(std::make_unique<Impl>()) {
  for (std::size_t i = 0; i < std::max(count, 1U); ++i) {
    impl_->loops.push_back(std::make_unique<EventLoop>(i));
  }
}

EventLoops::~EventLoops() { stop(); }

unsigned EventLoops::count() const { return static_cast<unsigned>(impl_->loops.size()); }

void EventLoops::post(std::function<void()> task) { impl_->next().entry()->post(std::move(task)); }

void EventLoops::after(std::chrono::milliseconds delay, std::function<void()> task) {
  auto& loop = impl_->next();
  loop.entry()->post([&loop, delay, task = std::move(task)]() mutable {
    const auto timer = std::make_shared<LoopTimer>(loop.context(), delay);
    timer->async_wait([timer, task = std::move(task)](const boost::system::error_code& error) {
      if (!error) task();
    });
  });
}

void EventLoops::stop() {
  for (const auto& loop : impl_->loops) loop->end();
  for (const auto& loop : impl_->loops) loop->clear();
}

}  // namespace hlv::server
