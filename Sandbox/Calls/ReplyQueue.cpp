#include "Sandbox/Calls/ReplyQueue.h"

#include <pthread.h>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <atomic>
#include <utility>

#include "Platform/Platform.h"

namespace hlv::sandbox {

/// The thread holds this, so blocks on it refer to it plainly.
struct ReplyQueue::State : std::enable_shared_from_this<State> {
  void enqueue(ServiceThread thread, std::function<void()> run) {
    asio::post(context, [thread, run = std::move(run)] {
      ::pthread_setname_np(::pthread_self(),
                           thread == ServiceThread::backend ? "service-1" : "service-2");
      run();
    });
  }

  void answer(ServiceThread thread, PreparedReply reply) {
    if (reply.delay.count() > 0) return hold(thread, std::move(reply));
    reply.deliver();
    reply.deliver = nullptr;
    finish();
  }

  void hold(ServiceThread thread, PreparedReply reply) {
    auto timer = std::make_shared<asio::steady_timer>(context, reply.delay);
    reply.delay = {};
    timer->async_wait(
        [this, timer, thread, reply = std::move(reply)](const asio::error_code& stopped) mutable {
          if (!stopped) answerAfterMainQueue(thread, std::move(reply));
        });
  }

  void answerAfterMainQueue(ServiceThread thread, PreparedReply reply) {
    Platform::current()->mainQueue()->async(
        [weak = weak_from_this(), thread, reply = std::move(reply)]() mutable {
          const auto state = weak.lock();
          if (!state) return;
          state->enqueue(thread, [plain = state.get(), thread, reply = std::move(reply)]() mutable {
            plain->answer(thread, std::move(reply));
          });
        });
  }

  /// A pump that waits on the main queue looks again.
  void finish() {
    --unfinished;
    if (!hasEnded) Platform::current()->mainQueue()->async([] {});
  }

  asio::io_context context;
  asio::executor_work_guard<asio::io_context::executor_type> stayReady{context.get_executor()};
  std::atomic<std::size_t> unfinished{0};
  std::atomic<bool> hasEnded{false};
};

ReplyQueue::ReplyQueue() : state_(std::make_shared<State>()) {}

ReplyQueue::~ReplyQueue() {
  state_->hasEnded = true;
  state_->context.stop();
  if (thread_.get_id() == std::this_thread::get_id()) {
    thread_.detach();
  } else if (thread_.joinable()) {
    thread_.join();
  }
}

void ReplyQueue::call(ServiceThread thread, Work work) {
  std::call_once(started_,
                 [this] { thread_ = std::thread([state = state_] { state->context.run(); }); });
  ++state_->unfinished;
  state_->enqueue(thread, [state = state_.get(), thread, work = std::move(work)]() mutable {
    auto reply = work();
    work = nullptr;
    if (reply) {
      state->answer(thread, std::move(*reply));
    } else {
      state->finish();
    }
  });
}

bool ReplyQueue::isQuiet() const { return state_->unfinished == 0; }

}  // namespace hlv::sandbox
