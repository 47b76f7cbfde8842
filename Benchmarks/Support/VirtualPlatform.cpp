#include "Benchmarks/Support/VirtualPlatform.h"

namespace hlv::bench {

class VirtualPlatform::EventQueue final : public Queue {
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

void VirtualPlatform::after(Time delay, Thread thread, Block block) {
  events_.emplace(std::pair(now_ + delay, posted_++), Event{thread, std::move(block)});
}

std::optional<VirtualPlatform::Thread> VirtualPlatform::runOne() {
  if (events_.empty()) return std::nullopt;
  const auto next = events_.extract(events_.begin());
  now_ = next.key().first;
  running_ = next.mapped().thread;
  next.mapped().block();
  running_ = Thread::main;
  return next.mapped().thread;
}

std::shared_ptr<Queue> VirtualPlatform::makeSerialQueue(Text label) {
  return makeQueue(std::move(label), Thread::serialQueue);
}

std::shared_ptr<Queue> VirtualPlatform::makeQueue(std::string label, Thread thread) {
  return std::make_shared<EventQueue>(std::move(label), *this, thread);
}

}  // namespace hlv::bench
