#include "Platform/Default/SerialQueue.h"

#include <utility>

namespace hlv {

SerialQueue::SerialQueue(std::string label, const std::shared_ptr<WorkerThreads>& workers,
                         std::function<void()> finished)
    : label_(std::move(label)),
      context_(workers->context()),
      workers_(workers),
      finished_(std::move(finished)),
      strand_(context_->get_executor()) {}

void SerialQueue::async(Block block) {
  const auto workers = workers_.lock();
  if (!workers) return;
  workers->start();
  ++context_->unfinished;
  // The block may free this queue, so it keeps what it needs for itself.
  asio::post(strand_,
             [context = context_.get(), finished = finished_, block = std::move(block)]() mutable {
               block();
               block = nullptr;
               --context->unfinished;
               finished();
             });
}

}  // namespace hlv
