#include "Platform/Default/WorkerThreads.h"

#include <pthread.h>

namespace hlv {

WorkerThreads::WorkerThreads()
    : context_(std::make_shared<BlockContext>()), stayReady_(context_->get_executor()) {}

WorkerThreads::~WorkerThreads() {
  stayReady_.reset();
  context_->stop();
  for (auto& thread : threads_) {
    if (thread.get_id() == std::this_thread::get_id()) {
      thread.detach();
    } else {
      thread.join();
    }
  }
  context_->abandon();
}

void WorkerThreads::start() {
  std::call_once(started_, [this] {
    constexpr int count = 2;
    for (int i = 0; i < count; ++i) {
      threads_.emplace_back([context = context_] {
        pthread_setname_np(pthread_self(), "serial-queue");
        context->run();
      });
    }
  });
}

}  // namespace hlv
