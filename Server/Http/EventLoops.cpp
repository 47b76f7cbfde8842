#include "Server/Http/EventLoops.h"

#include <pthread.h>

#include <algorithm>
#include <exception>
#include <functional>
#include <string>

namespace hlv::sandbox::server {
namespace {

void run(EventLoop& loop) {
  ::pthread_setname_np(::pthread_self(), ("http-" + std::to_string(loop.index + 1)).c_str());
  const auto work = boost::asio::make_work_guard(*loop.context);
  while (!loop.context->stopped()) {
    try {
      loop.context->run();
    } catch (const std::exception&) {
      // Ends the connection whose memory ran out, and no other.
    }
  }
}

}  // namespace

EventLoops::EventLoops(unsigned count) : loops_(std::max(count, 1U)) {
  for (std::size_t i = 0; i < loops_.size(); ++i) {
    loops_[i].index = i;
    loops_[i].thread = std::thread(run, std::ref(loops_[i]));
  }
}

void EventLoops::after(std::chrono::milliseconds delay, std::function<void()> task) {
  const auto timer = std::make_shared<LoopTimer>(*next().context, delay);
  timer->async_wait([timer, task = std::move(task)](const boost::system::error_code& error) {
    if (!error) task();
  });
}

void EventLoops::stop() {
  for (auto& loop : loops_) loop.context->stop();
  for (auto& loop : loops_) {
    if (loop.thread.joinable()) loop.thread.join();
  }
  loops_.clear();
}

}  // namespace hlv::sandbox::server
