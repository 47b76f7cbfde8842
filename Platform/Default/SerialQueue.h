// A labelled serial queue on the shared threads. Private to this folder.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Platform/Default/WorkerThreads.h"
#include "Platform/Queue.h"

namespace hlv {

/// Threading: as Queue.
class SerialQueue final : public Queue {
 public:
  /// `finished` is called after every block, on the block's thread.
  SerialQueue(std::string label, const std::shared_ptr<WorkerThreads>& workers,
              std::function<void()> finished);
  void async(Block block) override;
  std::string label() const override { return label_; }

 private:
  const std::string label_;
  // The context outlives the strand; the threads belong to the platform, so that a queue which is
  // freed in a block of its own never waits for the thread it runs on.
  const std::shared_ptr<BlockContext> context_;
  const std::weak_ptr<WorkerThreads> workers_;
  const std::function<void()> finished_;
  asio::strand<asio::io_context::executor_type> strand_;
};

}  // namespace hlv
