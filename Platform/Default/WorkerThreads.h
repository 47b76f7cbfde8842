// The threads that serial queues share. Private to this folder.
#pragma once

#include <asio/executor_work_guard.hpp>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "Platform/Default/BlockContext.h"

namespace hlv {

/// Two threads, so that one slow block does not hold up every queue; none before `start`.
///
/// Threading: any; it may be destroyed on one of its own threads.
class WorkerThreads {
 public:
  WorkerThreads();
  ~WorkerThreads();
  WorkerThreads(const WorkerThreads&) = delete;
  WorkerThreads& operator=(const WorkerThreads&) = delete;

  void start();
  const std::shared_ptr<BlockContext>& context() const { return context_; }

 private:
  const std::shared_ptr<BlockContext> context_;
  asio::executor_work_guard<asio::io_context::executor_type> stayReady_;
  std::once_flag started_;
  std::vector<std::thread> threads_;
};

}  // namespace hlv
