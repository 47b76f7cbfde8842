#include "Platform/Default/WorkerThreads.h"

#include <pthread.h>

namespace hlv {

WorkerThreads::~WorkerThreads() {
  line_->close();
  for (auto& thread : threads_) {
    const bool isThisOne = thread.get_id() == std::this_thread::get_id();
    isThisOne ? thread.detach() : thread.join();
  }
}

void WorkerThreads::post(Block block, std::shared_ptr<BlockLine::Lane> lane) {
  line_->post(std::move(block), std::move(lane));
  constexpr std::size_t count = 2;
  const std::lock_guard lock(starting_);
  while (threads_.size() < count) {
    threads_.emplace_back([line = line_, finished = finished_] {
      pthread_setname_np(pthread_self(), "serial-queue");
      while (line->runOne(BlockLine::Wait::forBlock)) finished();
    });
  }
}

}  // namespace hlv
