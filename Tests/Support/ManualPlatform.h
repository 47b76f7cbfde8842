// A platform whose every source of order is in the test's hands.
//
// Threading: one thread plays all of them.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Default/DefaultNotificationCenter.h"
#include "Platform/Platform.h"

namespace hlv::testing {

class ManualPlatform final : public Platform, public std::enable_shared_from_this<ManualPlatform> {
 public:
  class ManualQueue final : public Queue {
   public:
    /// `owner` is who posts just now.
    explicit ManualQueue(std::string label, const std::size_t* owner = nullptr)
        : label_(std::move(label)), owner_(owner) {}
    void async(Block block) override {
      blocks_.push_back({std::move(block), owner_ ? *owner_ : 0});
    }
    hlv::Text label() const override { return label_; }

    /// Frees the blocks; they will never run.
    void drop() { blocks_.clear(); }
    std::size_t waiting() const { return blocks_.size(); }
    bool runOne() {
      if (blocks_.empty()) return false;
      const Block block = std::move(blocks_.front().first);
      blocks_.pop_front();
      block();
      return true;
    }
    /// Who posted the block that is next.
    std::size_t nextOwner() const { return blocks_.front().second; }

   private:
    const std::string label_;
    const std::size_t* const owner_;
    std::deque<std::pair<Block, std::size_t>> blocks_;
  };

  /// Whether the test plays the main thread just now.
  bool onMainThread = true;
  std::vector<std::string> labelsMade;
  /// Whose work the test does just now, if it cares.
  std::size_t owner = 0;

  bool isMainThread() const override { return onMainThread; }
  std::shared_ptr<Queue> mainQueue() override { return main; }
  std::shared_ptr<Queue> makeSerialQueue(hlv::Text label) override {
    labelsMade.push_back(label);
    auto queue = std::make_shared<ManualQueue>(std::move(label), &owner);
    serialQueues.push_back(queue);
    return queue;
  }
  std::shared_ptr<NotificationCenter> notificationCenter() override { return center_; }

  /// Runs what waits on the main queue, on the main thread, and on the serial queues, off it; false
  /// if there was nothing.
  bool runEverything() {
    bool ranAny = false;
    for (bool ran = true; ran; ranAny |= ran) {
      ran = runAll(*main, true);
      for (std::size_t i = 0; i < serialQueues.size(); ++i) {
        if (const auto queue = serialQueues[i].lock()) ran |= runAll(*queue, false);
      }
    }
    return ranAny;
  }

  const std::shared_ptr<ManualQueue> main = std::make_shared<ManualQueue>("main", &owner);
  std::vector<std::weak_ptr<ManualQueue>> serialQueues;

 private:
  /// Whether there was anything to run.
  bool runAll(ManualQueue& queue, bool asMain) {
    const bool before = std::exchange(onMainThread, asMain);
    bool ran = false;
    while (queue.runOne()) ran = true;
    onMainThread = before;
    return ran;
  }

  const std::shared_ptr<DefaultNotificationCenter> center_ =
      std::make_shared<DefaultNotificationCenter>();
};

}  // namespace hlv::testing
