// A labelled serial queue on the shared threads. Private to this folder.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "Platform/Default/WorkerThreads.h"

namespace hlv {

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

}  // namespace hlv
