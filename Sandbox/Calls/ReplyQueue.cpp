#include "Sandbox/Calls/ReplyQueue.h"

#include <pthread.h>

#include <array>
#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <atomic>
#include <deque>
#include <string>
#include <utility>

#include "Platform/Platform.h"
#include "Values/Mutex.h"

namespace hlv::sandbox {
namespace {

using WorkGuard = asio::executor_work_guard<asio::io_context::executor_type>;

struct Task {
  ServiceThread thread;
  std::function<void()> run;
};

}  // namespace

/// Each service's thread holds this, so blocks on the threads refer to it plainly.
struct ReplyQueue::State : std::enable_shared_from_this<State> {
  asio::io_context& context(ServiceThread thread) {
    return contexts[static_cast<std::size_t>(thread)];
  }

  void enqueue(Task task) {
    const Lock lock(mutex);
    tasks.push_back(std::move(task));
    if (!isServing) callNext();
  }

  void callNext() HLV_REQUIRES(mutex) {
    isServing = !tasks.empty();
    if (isServing) asio::post(context(tasks.front().thread), [this] { serve(); });
  }

  void serve() {
    Task task = [this] {
      const Lock lock(mutex);
      auto first = std::move(tasks.front());
      tasks.pop_front();
      return first;
    }();
    task.run();
    task.run = nullptr;
    const Lock lock(mutex);
    callNext();
  }

  void answer(ServiceThread thread, PreparedReply reply) {
    if (reply.delay.count() > 0) return hold(thread, std::move(reply));
    reply.deliver();
    reply.deliver = nullptr;
    finish();
  }

  void hold(ServiceThread thread, PreparedReply reply) {
    auto timer = std::make_shared<asio::steady_timer>(context(thread), reply.delay);
    reply.delay = {};
    timer->async_wait(
        [this, timer, thread, reply = std::move(reply)](const asio::error_code& stopped) mutable {
          if (!stopped) answerAfterMainQueue(thread, std::move(reply));
        });
  }

  void answerAfterMainQueue(ServiceThread thread, PreparedReply reply) {
    Platform::current()->mainQueue()->async([weak = weak_from_this(), thread,
                                             reply = std::move(reply)]() mutable {
      const auto state = weak.lock();
      if (!state) return;
      state->enqueue({thread, [plain = state.get(), thread, reply = std::move(reply)]() mutable {
                        plain->answer(thread, std::move(reply));
                      }});
    });
  }

  /// A pump that waits on the main queue looks again.
  void finish() {
    --unfinished;
    if (!hasEnded) Platform::current()->mainQueue()->async([] {});
  }

  std::array<asio::io_context, 2> contexts;
  std::array<WorkGuard, 2> stayReady{WorkGuard(contexts[0].get_executor()),
                                     WorkGuard(contexts[1].get_executor())};
  std::atomic<std::size_t> unfinished{0};
  std::atomic<bool> hasEnded{false};
  Mutex mutex;
  std::deque<Task> tasks HLV_GUARDED_BY(mutex);
  bool isServing HLV_GUARDED_BY(mutex) = false;
};

ReplyQueue::ReplyQueue() : state_(std::make_shared<State>()) {}

ReplyQueue::~ReplyQueue() {
  state_->hasEnded = true;
  for (auto& context : state_->contexts) context.stop();
  for (auto& thread : threads_) {
    if (thread.get_id() == std::this_thread::get_id()) {
      thread.detach();
    } else {
      thread.join();
    }
  }
}

void ReplyQueue::start() {
  std::call_once(started_, [this] {
    for (const auto thread : {ServiceThread::backend, ServiceThread::provider}) {
      threads_.emplace_back([state = state_, thread] {
        const auto name = "service-" + std::to_string(static_cast<int>(thread) + 1);
        pthread_setname_np(pthread_self(), name.c_str());
        state->context(thread).run();
      });
    }
  });
}

void ReplyQueue::call(ServiceThread thread, Work work) {
  start();
  ++state_->unfinished;
  state_->enqueue({thread, [state = state_.get(), thread, work = std::move(work)]() mutable {
                     auto reply = work();
                     work = nullptr;
                     if (reply) {
                       state->answer(thread, std::move(*reply));
                     } else {
                       state->finish();
                     }
                   }});
}

bool ReplyQueue::isQuiet() const { return state_->unfinished == 0; }

}  // namespace hlv::sandbox
