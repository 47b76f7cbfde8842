#include "Async/Group.h"

#include <utility>

namespace hlv {

void Group::enter() {
  const Lock lock(mutex_);
  ++entered_;
}

void Group::leave() {
  std::vector<Waiter> ready;
  {
    const Lock lock(mutex_);
    if (entered_ == 0 || --entered_ > 0) return;
    ready.swap(waiters_);
  }
  for (auto& waiter : ready) waiter.queue->async(std::move(waiter.block));
}

void Group::notify(std::shared_ptr<Queue> queue, Block block) {
  {
    const Lock lock(mutex_);
    if (entered_ > 0) {
      waiters_.push_back({std::move(queue), std::move(block)});
      return;
    }
  }
  queue->async(std::move(block));
}

}  // namespace hlv
