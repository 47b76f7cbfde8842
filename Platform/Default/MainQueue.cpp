#include "Platform/Default/MainQueue.h"

#include <utility>

namespace hlv {

MainQueue::~MainQueue() {
  stayReady_.reset();
  context_.abandon();
}

void MainQueue::async(Block block) {
  ++context_.unfinished;
  asio::post(context_, [this, block = std::move(block)]() mutable {
    block();
    block = nullptr;
    --context_.unfinished;
  });
  std::function<void()> hook;
  {
    const std::lock_guard lock(hookMutex_);
    hook = hook_;
  }
  if (hook) hook();
}

std::size_t MainQueue::runPending() { return context_.poll(); }

void MainQueue::runOne() { context_.run_one(); }

void MainQueue::setPostHook(std::function<void()> hook) {
  const std::lock_guard lock(hookMutex_);
  hook_.swap(hook);
}

}  // namespace hlv
