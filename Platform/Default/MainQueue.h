// The main queue that the app pumps. Private to this folder.
#pragma once

#include <asio/executor_work_guard.hpp>
#include <functional>
#include <mutex>

#include "Platform/Default/BlockContext.h"
#include "Platform/Queue.h"

namespace hlv {

/// Threading: as Queue; `runPending` and `runOne` on the main thread, where a running block may
/// call them too.
class MainQueue final : public Queue {
 public:
  ~MainQueue() override;
  void async(Block block) override;
  std::string label() const override { return "main"; }

  std::size_t runPending();
  /// Waits for a block and runs it.
  void runOne();
  void setPostHook(std::function<void()> hook);
  bool isIdle() const { return context_.unfinished == 0; }

 private:
  BlockContext context_;
  asio::executor_work_guard<asio::io_context::executor_type> stayReady_{context_.get_executor()};
  std::mutex hookMutex_;
  std::function<void()> hook_;
};

}  // namespace hlv
