#include "Platform/Default/WorkerThreads.h"

#include <pthread.h>

namespace hlv {

WorkerThreads::~WorkerThreads() { end(); }

void WorkerThreads::end() {
  std::vector<std::thread> ending;
  {
    const Lock lock(mutex_);
    hasEnded_ = true;
    ending.swap(threads_);
  }
  tasks_->close();
  for (auto& thread : ending) {
    const bool isThisOne = thread.get_id() == std::this_thread::get_id();
    isThisOne ? thread.detach() : thread.join();
  }
}

void WorkerThreads::post(Block block, std::shared_ptr<TaskQueue::Strand> strand) {
  tasks_->post(std::move(block), std::move(strand));
  constexpr std::size_t count = 2;
  const Lock lock(mutex_);
  while (!hasEnded_ && threads_.size() < count) {
    threads_.emplace_back([line = tasks_, finished = finished_] {
      pthread_setname_np(pthread_self(), "serial-queue");
      while (line->runOne(TaskQueue::Wait::forBlock)) finished();
    });
  }
}

}  // namespace hlv
