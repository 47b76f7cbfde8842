#include "Services/Remote/CallThreads.h"

#include <pthread.h>

#include <string>
#include <utility>

#include "Platform/Platform.h"

namespace hlv::services {
namespace {

constexpr int threadCount = 4;

}  // namespace

struct CallThreads::State {
  void work() {
    for (;;) {
      std::function<void()> call;
      {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return hasEnded || !calls.empty(); });
        if (hasEnded) return;
        call = std::move(calls.front());
        calls.pop_front();
      }
      call();
      call = nullptr;
      {
        const std::lock_guard lock(mutex);
        --unfinished;
        if (hasEnded) return;
      }
      // A pump that waits on the main queue looks again.
      Platform::current()->mainQueue()->async([] {});
    }
  }

  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::function<void()>> calls;
  std::size_t unfinished = 0;
  bool hasEnded = false;
};

CallThreads::CallThreads() : state_(std::make_shared<State>()) {}

CallThreads::~CallThreads() {
  std::deque<std::function<void()>> freed;
  {
    const std::lock_guard lock(state_->mutex);
    state_->hasEnded = true;
    freed.swap(state_->calls);
  }
  state_->changed.notify_all();
  for (auto& thread : threads_) {
    if (thread.get_id() == std::this_thread::get_id()) {
      thread.detach();
    } else {
      thread.join();
    }
  }
}

void CallThreads::run(std::function<void()> call) {
  std::call_once(started_, [this] {
    for (int i = 1; i <= threadCount; ++i) {
      threads_.emplace_back([state = state_, i] {
        ::pthread_setname_np(::pthread_self(), ("remote-" + std::to_string(i)).c_str());
        state->work();
      });
    }
  });
  {
    const std::lock_guard lock(state_->mutex);
    ++state_->unfinished;
    state_->calls.push_back(std::move(call));
  }
  state_->changed.notify_one();
}

bool CallThreads::isQuiet() const {
  const std::lock_guard lock(state_->mutex);
  return state_->unfinished == 0;
}

}  // namespace hlv::services
