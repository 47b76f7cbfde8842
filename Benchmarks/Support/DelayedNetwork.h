// Answers after a real latency, always the same, on one thread.
//
// Threading: calls come from any thread.
#pragma once

#include <chrono>
#include <memory>
#include <thread>
#include <utility>

#include "Benchmarks/Support/BenchHost.h"
#include "Platform/Default/DefaultPlatform.h"

namespace hlv::bench {

class DelayedNetwork {
 public:
  explicit DelayedNetwork(std::chrono::milliseconds latency) : latency_(latency) {}

  template <class Answer>
  void answer(RemoteCall, Answer answer) {
    const auto due = std::chrono::steady_clock::now() + latency_;
    queue_->async([due, answer = std::move(answer)] {
      // A sleeping thread wakes up late by more than what is to be measured, so it wakes up early
      // and watches the clock.
      std::this_thread::sleep_until(due - std::chrono::microseconds(500));
      while (std::chrono::steady_clock::now() < due) {
      }
      answer();
    });
  }

 private:
  const std::chrono::milliseconds latency_;
  const std::shared_ptr<DefaultPlatform> platform_ = DefaultPlatform::make();
  const std::shared_ptr<Queue> queue_ = platform_->makeSerialQueue("services");
};

}  // namespace hlv::bench
