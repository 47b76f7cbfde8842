// The main queue that the app pumps. Private to this folder.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "Platform/Default/TaskQueue.h"
#include "Platform/SharedSlot.h"

namespace hlv {

/// Its blocks have no strand: a running one may pump the queue in turn.
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

}  // namespace hlv
