#include "Platform/Default/DefaultPlatform.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>
#include <utility>

#include "Platform/Default/DefaultNotificationCenter.h"
#include "Platform/Default/TaskQueue.h"
#include "Platform/Default/WorkerThreads.h"
#include "Platform/SharedSlot.h"

namespace hlv {
namespace {

/// What the app pumps. Its blocks have no strand: a running one may pump the queue in turn.
///
/// Threading: as Queue.
class MainQueue final : public Queue {
 public:
  explicit MainQueue(std::weak_ptr<TaskQueue> line) : tasks_(std::move(line)) {}
  Text label() const override { return "main"; }
  void async(Block block) override {
    const auto line = tasks_.lock();
    if (!line) return;
    line->post(std::move(block));
    if (const auto hook = hook_.load(); hook && *hook) (*hook)();
  }
  void setPostHook(Block hook) { hook_.store(std::make_shared<Block>(std::move(hook))); }

 private:
  const std::weak_ptr<TaskQueue> tasks_;
  SharedSlot<Block> hook_;
};

/// A strand on threads that belong to the platform: a queue that is freed in a block of its own
/// never waits for the thread it runs on.
///
/// Threading: as Queue.
class SerialQueue final : public Queue {
 public:
  SerialQueue(Text label, std::weak_ptr<WorkerThreads> workers)
      : label_(std::move(label)), workers_(std::move(workers)) {}
  Text label() const override { return label_; }
  void async(Block block) override {
    // The block may free this queue before the call returns.
    if (const auto workers = workers_.lock()) workers->post(std::move(block), strand_);
  }

 private:
  const std::string label_;
  const std::weak_ptr<WorkerThreads> workers_;
  const std::shared_ptr<TaskQueue::Strand> strand_ = std::make_shared<TaskQueue::Strand>();
};

}  // namespace

struct DefaultPlatform::State {
  const std::shared_ptr<TaskQueue> mainLine = std::make_shared<TaskQueue>();
  const std::shared_ptr<MainQueue> mainQueue = std::make_shared<MainQueue>(mainLine);
  const std::shared_ptr<DefaultNotificationCenter> notificationCenter =
      std::make_shared<DefaultNotificationCenter>();
  // Whoever waits for the main queue asks again after every block.
  const std::shared_ptr<WorkerThreads> workers =
      std::make_shared<WorkerThreads>([line = mainLine] { line->wake(); });
  // No thread has the empty id: none was adopted.
  std::atomic<std::thread::id> adoptedMainThread{};
};

std::shared_ptr<DefaultPlatform> DefaultPlatform::make() {
  return std::shared_ptr<DefaultPlatform>(new DefaultPlatform);
}

std::shared_ptr<DefaultPlatform> DefaultPlatform::shared() {
  static const auto& platform = []() -> const std::shared_ptr<DefaultPlatform>& {
    std::atexit([] { shared()->state_->workers->end(); });
    return *new std::shared_ptr<DefaultPlatform>(make());
  }();
  return platform;
}

DefaultPlatform::DefaultPlatform() : state_(std::make_unique<State>()) {}

DefaultPlatform::~DefaultPlatform() = default;

bool DefaultPlatform::isMainThread() const {
  const auto adopted = state_->adoptedMainThread.load();
  if (adopted != std::thread::id()) return adopted == std::this_thread::get_id();
  static thread_local const bool startedTheProcess = ::getpid() == ::gettid();
  return startedTheProcess;
}

std::shared_ptr<Queue> DefaultPlatform::mainQueue() { return state_->mainQueue; }

std::shared_ptr<Queue> DefaultPlatform::makeSerialQueue(Text label) {
  return std::make_shared<SerialQueue>(std::move(label), state_->workers);
}

std::shared_ptr<NotificationCenter> DefaultPlatform::notificationCenter() {
  return state_->notificationCenter;
}

void DefaultPlatform::adoptMainThread() { state_->adoptedMainThread = std::this_thread::get_id(); }

std::size_t DefaultPlatform::runPending() {
  std::size_t ran = 0;
  const auto line = state_->mainLine;  // A block may let go of the platform.
  while (line->runOne(TaskQueue::Wait::no)) ++ran;
  return ran;
}

void DefaultPlatform::runUntil(const std::function<bool()>& done) {
  const auto line = state_->mainLine;
  while (!done()) line->runOne(TaskQueue::Wait::forBlock);
}

void DefaultPlatform::setPostHook(std::function<void()> hook) {
  state_->mainQueue->setPostHook(std::move(hook));
}

bool DefaultPlatform::isIdle() const {
  // In this order: the last block of a serial queue may have posted to the main queue.
  return state_->workers->isIdle() && state_->mainLine->isIdle();
}

}  // namespace hlv
