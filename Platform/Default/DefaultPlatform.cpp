#include "Platform/Default/DefaultPlatform.h"

#include <unistd.h>

#include <atomic>
#include <thread>
#include <utility>

#include "Platform/Default/DefaultNotificationCenter.h"
#include "Platform/Default/MainQueue.h"
#include "Platform/Default/SerialQueue.h"
#include "Platform/Default/WorkerThreads.h"

namespace hlv {
namespace {

/// Wakes the main queue's wait when a block of another queue has finished.
struct Waker {
  std::weak_ptr<MainQueue> mainQueue;
  std::atomic<bool> somebodyWaits{false};

  void wake() {
    if (!somebodyWaits) return;
    if (const auto queue = mainQueue.lock()) queue->async([] {});
  }
};

}  // namespace

struct DefaultPlatform::State {
  const std::shared_ptr<MainQueue> mainQueue = std::make_shared<MainQueue>();
  const std::shared_ptr<Waker> waker = std::make_shared<Waker>();
  const std::shared_ptr<DefaultNotificationCenter> notificationCenter =
      std::make_shared<DefaultNotificationCenter>();
  const std::shared_ptr<WorkerThreads> workers = std::make_shared<WorkerThreads>();
  // No thread has the empty id: none was adopted.
  std::atomic<std::thread::id> adoptedMainThread{};
};

std::shared_ptr<DefaultPlatform> DefaultPlatform::make() {
  auto state = std::make_unique<State>();
  state->waker->mainQueue = state->mainQueue;
  return std::shared_ptr<DefaultPlatform>(new DefaultPlatform(std::move(state)));
}

std::shared_ptr<DefaultPlatform> DefaultPlatform::shared() {
  static const std::shared_ptr<DefaultPlatform> platform = make();
  return platform;
}

DefaultPlatform::DefaultPlatform(std::unique_ptr<State> state) : state_(std::move(state)) {}

DefaultPlatform::~DefaultPlatform() = default;

bool DefaultPlatform::isMainThread() const {
  const auto adopted = state_->adoptedMainThread.load();
  if (adopted != std::thread::id()) return adopted == std::this_thread::get_id();
  static thread_local const bool startedTheProcess = ::getpid() == ::gettid();
  return startedTheProcess;
}

std::shared_ptr<Queue> DefaultPlatform::mainQueue() { return state_->mainQueue; }

std::shared_ptr<Queue> DefaultPlatform::makeSerialQueue(std::string label) {
  return std::make_shared<SerialQueue>(std::move(label), state_->workers,
                                       [waker = state_->waker] { waker->wake(); });
}

std::shared_ptr<NotificationCenter> DefaultPlatform::notificationCenter() {
  return state_->notificationCenter;
}

void DefaultPlatform::adoptMainThread() { state_->adoptedMainThread = std::this_thread::get_id(); }

std::size_t DefaultPlatform::runPending() { return state_->mainQueue->runPending(); }

void DefaultPlatform::runUntil(const std::function<bool()>& done) {
  // A block that is pumped here may wait in turn.
  const bool outerWaits = state_->waker->somebodyWaits.exchange(true);
  while (!done()) state_->mainQueue->runOne();
  state_->waker->somebodyWaits = outerWaits;
}

void DefaultPlatform::setPostHook(std::function<void()> hook) {
  state_->mainQueue->setPostHook(std::move(hook));
}

bool DefaultPlatform::isIdle() const {
  return state_->mainQueue->isIdle() && state_->workers->context()->unfinished == 0;
}

}  // namespace hlv
