#include "Server/Http/EventLoops.h"

#include <pthread.h>

#include <algorithm>
#include <exception>
#include <functional>
#include <string>

#include "Server/Http/EventLoop.h"

namespace hlv::server {

namespace asio = boost::asio;

namespace {

void run(EventLoop& loop) {
  ::pthread_setname_np(::pthread_self(), ("http-" + std::to_string(loop.index + 1)).c_str());
  const auto work = asio::make_work_guard(*loop.context);
  while (!loop.context->stopped()) {
    try {
      loop.context->run();
    } catch (const std::exception&) {
      // Ends the connection whose memory ran out, and no other.
    }
  }
}

}  // namespace

EventLoops::EventLoops(unsigned count) : impl_(std::make_unique<Impl>()) {
  auto& loops = impl_->loops;
  loops.resize(std::max(count, 1U));
  for (std::size_t i = 0; i < loops.size(); ++i) {
    loops[i].index = i;
    loops[i].thread = std::thread(run, std::ref(loops[i]));
  }
}

EventLoops::~EventLoops() { stop(); }

unsigned EventLoops::count() const { return static_cast<unsigned>(impl_->loops.size()); }

void EventLoops::post(std::function<void()> task) {
  asio::post(*impl_->next().context, std::move(task));
}

void EventLoops::after(std::chrono::milliseconds delay, std::function<void()> task) {
  const auto timer = std::make_shared<LoopTimer>(*impl_->next().context, delay);
  timer->async_wait([timer, task = std::move(task)](const boost::system::error_code& error) {
    if (!error) task();
  });
}

void EventLoops::stop() {
  for (auto& loop : impl_->loops) loop.context->stop();
  for (auto& loop : impl_->loops) {
    if (loop.thread.joinable()) loop.thread.join();
  }
  impl_->loops.clear();
}

}  // namespace hlv::server
