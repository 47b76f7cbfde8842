// Threads that do something at the same moment, for litmus tests. Data that such a test writes
// without a lock is for what it tests to order; where it does not, ThreadSanitizer reports a race.
#pragma once

#include <functional>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Queue.h"

namespace hlv::testing {

/// Runs all parts at the same moment, each on its own thread, and `check` after them; again and
/// again, each time with a new `Round`.
template <class Round>
void atOnce(const std::vector<std::function<void(Round&)>>& parts,
            const std::function<void(Round&)>& check) {
  for (int number = 0; number < 300; ++number) {
    Round round;
    // Nothing is waited for after a part but its thread's end: that would order the parts.
    std::latch start(static_cast<std::ptrdiff_t>(parts.size()));
    std::vector<std::thread> threads;
    for (const auto& part : parts) {
      threads.emplace_back([&] {
        start.arrive_and_wait();
        part(round);
      });
    }
    for (auto& thread : threads) thread.join();
    check(round);
  }
}

/// Runs a block inside the call that posts it, so that it orders nothing by itself.
struct ImmediateQueue final : Queue {
  void async(Block block) override { block(); }
  Text label() const override { return "immediate"; }
};

}  // namespace hlv::testing
