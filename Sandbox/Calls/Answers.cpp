#include "Sandbox/Calls/Answers.h"

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

namespace hlv::sandbox {
namespace {

using WorkGuard = asio::executor_work_guard<asio::io_context::executor_type>;

struct Turn {
  Lane lane;
  std::function<void()> run;
};

}  // namespace

/// Each lane's thread holds this, so blocks on the lanes refer to it plainly.
struct Answers::State : std::enable_shared_from_this<State> {
  asio::io_context& context(Lane lane) { return contexts[static_cast<std::size_t>(lane)]; }

  void lineUp(Turn turn) {
    const std::lock_guard lock(mutex);
    turns.push_back(std::move(turn));
    if (!isServing) callNext();
  }

  /// With the lock held.
  void callNext() {
    isServing = !turns.empty();
    if (isServing) asio::post(context(turns.front().lane), [this] { serve(); });
  }

  void serve() {
    Turn turn = [this] {
      const std::lock_guard lock(mutex);
      auto first = std::move(turns.front());
      turns.pop_front();
      return first;
    }();
    turn.run();
    turn.run = nullptr;
    const std::lock_guard lock(mutex);
    callNext();
  }

  void answer(Lane lane, Delivery delivery) {
    if (delivery.delay.count() > 0) return hold(lane, std::move(delivery));
    delivery.deliver();
    delivery.deliver = nullptr;
    finish();
  }

  void hold(Lane lane, Delivery delivery) {
    auto timer = std::make_shared<asio::steady_timer>(context(lane), delivery.delay);
    delivery.delay = {};
    timer->async_wait([this, timer, lane,
                       delivery = std::move(delivery)](const asio::error_code& stopped) mutable {
      if (!stopped) answerAfterMainQueue(lane, std::move(delivery));
    });
  }

  void answerAfterMainQueue(Lane lane, Delivery delivery) {
    Platform::current()->mainQueue()->async([weak = weak_from_this(), lane,
                                             delivery = std::move(delivery)]() mutable {
      const auto state = weak.lock();
      if (!state) return;
      state->lineUp({lane, [plain = state.get(), lane, delivery = std::move(delivery)]() mutable {
                       plain->answer(lane, std::move(delivery));
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
  std::mutex mutex;
  std::deque<Turn> turns;
  bool isServing = false;
};

Answers::Answers() : state_(std::make_shared<State>()) {}

Answers::~Answers() {
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

void Answers::start() {
  std::call_once(started_, [this] {
    for (const auto lane : {Lane::backend, Lane::provider}) {
      threads_.emplace_back([state = state_, lane] {
        const auto name = "service-" + std::to_string(static_cast<int>(lane) + 1);
        pthread_setname_np(pthread_self(), name.c_str());
        state->context(lane).run();
      });
    }
  });
}

void Answers::call(Lane lane, Work work) {
  start();
  ++state_->unfinished;
  state_->lineUp({lane, [state = state_.get(), lane, work = std::move(work)]() mutable {
                    auto delivery = work();
                    work = nullptr;
                    if (delivery) {
                      state->answer(lane, std::move(*delivery));
                    } else {
                      state->finish();
                    }
                  }});
}

bool Answers::isQuiet() const { return state_->unfinished == 0; }

}  // namespace hlv::sandbox
