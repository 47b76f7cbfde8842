#include "Platform/Once.h"

namespace hlv {

void Once::run(const std::function<void()>& body) {
  {
    std::unique_lock lock(mutex_);
    if (state_ == State::running && runner_ == std::this_thread::get_id()) return;
    finished_.wait(lock, [this] { return state_ != State::running; });
    if (state_ == State::done) return;
    state_ = State::running;
    runner_ = std::this_thread::get_id();
  }
  body();
  {
    const std::lock_guard lock(mutex_);
    state_ = State::done;
  }
  finished_.notify_all();
}

void Once::reset() {
  const std::lock_guard lock(mutex_);
  state_ = State::idle;
}

}  // namespace hlv
