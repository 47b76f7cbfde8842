// A platform, and a network, whose clock moves from one event to the next and stands still while
// one runs.
//
// Threading: one thread plays all of them.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Benchmarks/Support/BenchHost.h"
#include "Platform/Default/DefaultPlatform.h"
#include "Platform/Platform.h"

namespace hlv::bench {

class VirtualPlatform final : public Platform {
 public:
  using Time = std::int64_t;
  enum class Thread { main, serialQueue, service };

  /// `answering` is the thread on which the services answer.
  explicit VirtualPlatform(Thread answering) : answering_(answering) {}

  Time now() const { return now_; }
  Time& latency(RemoteCall call) { return latencies_[static_cast<std::size_t>(call)]; }
  /// Runs the next event and says on which thread that was; nothing when there is none left.
  std::optional<Thread> runOne() {
    if (events_.empty()) return std::nullopt;
    const auto next = events_.extract(events_.begin());
    now_ = next.key().first;
    running_ = next.mapped().thread;
    next.mapped().block();
    running_ = Thread::main;
    return next.mapped().thread;
  }

  template <class Answer>
  void answer(RemoteCall call, Answer answer) {
    after(latency(call), answering_, std::move(answer));
  }

  bool isMainThread() const override { return running_ == Thread::main; }
  std::shared_ptr<Queue> mainQueue() override { return main_; }
  std::shared_ptr<Queue> makeSerialQueue(Text label) override {
    return makeQueue(std::move(label), Thread::serialQueue);
  }
  std::shared_ptr<NotificationCenter> notificationCenter() override {
    return notifications_->notificationCenter();
  }

 private:
  class EventQueue final : public Queue {
   public:
    EventQueue(std::string label, VirtualPlatform& platform, Thread thread)
        : label_(std::move(label)), platform_(platform), thread_(thread) {}
    void async(Block block) override { platform_.after(0, thread_, std::move(block)); }
    Text label() const override { return label_; }

   private:
    const std::string label_;
    VirtualPlatform& platform_;
    const Thread thread_;
  };
  struct Event {
    Thread thread;
    Block block;
  };

  void after(Time delay, Thread thread, Block block) {
    events_.emplace(std::pair(now_ + delay, posted_++), Event{thread, std::move(block)});
  }
  std::shared_ptr<Queue> makeQueue(std::string label, Thread thread) {
    return std::make_shared<EventQueue>(std::move(label), *this, thread);
  }

  const Thread answering_;
  std::array<Time, static_cast<std::size_t>(RemoteCall::fetchCards) + 1> latencies_{};
  // By time, and then in the order in which they were posted.
  std::map<std::pair<Time, std::int64_t>, Event> events_;
  std::int64_t posted_ = 0;
  Time now_ = 0;
  Thread running_ = Thread::main;
  std::shared_ptr<Queue> main_ = makeQueue("main", Thread::main);
  const std::shared_ptr<Platform> notifications_ = DefaultPlatform::make();
};

}  // namespace hlv::bench
