// A network whose clock moves from one reply to the next and stands still while anything runs.
//
// Threading: one thread plays all of them.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

#include "Benchmarks/Support/BenchHost.h"

namespace hlv::bench {

class VirtualNetwork {
 public:
  using Time = std::int64_t;

  Time now() const { return now_; }
  Time& latency(testing::Service service) { return latencies_[service]; }

  template <class Answer>
  void answer(testing::Service service, Answer answer) {
    replies_.emplace(now_ + latency(service), std::move(answer));
  }
  /// False when there is no reply left.
  bool replyNext() {
    if (replies_.empty()) return false;
    const auto next = replies_.extract(replies_.begin());
    now_ = next.key();
    next.mapped()();
    return true;
  }

 private:
  std::map<testing::Service, Time> latencies_;
  /// Those of the same time are in the order of their calls.
  std::multimap<Time, std::function<void()>> replies_;
  Time now_ = 0;
};

}  // namespace hlv::bench
