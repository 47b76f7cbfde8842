// A host and a provider that answer from many threads, as a plan says.
#pragma once

#include <asio/post.hpp>
#include <asio/thread_pool.hpp>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

#include "Tests/Support/ScriptedHost.h"

namespace hlv::testing {

/// The threads on which the services answer.
///
/// Threading: any; destroyed when it is quiet.
class AnswerThreads {
 public:
  /// `wentQuiet` is called on one of the threads when nothing waits or runs any more.
  explicit AnswerThreads(std::function<void()> wentQuiet) : wentQuiet_(std::move(wentQuiet)) {}
  ~AnswerThreads() { threads_.join(); }
  AnswerThreads(const AnswerThreads&) = delete;
  AnswerThreads& operator=(const AnswerThreads&) = delete;

  void post(std::function<void()> answer) {
    ++posted_;
    ++unfinished_;
    asio::post(threads_, [this, answer = std::move(answer)]() mutable {
      answer();
      answer = nullptr;
      if (--unfinished_ == 0) wentQuiet_();
    });
  }
  bool isQuiet() const { return unfinished_ == 0; }
  /// How many answers were ever posted.
  std::size_t posted() const { return posted_; }

 private:
  const std::function<void()> wentQuiet_;
  std::atomic<std::size_t> posted_{0}, unfinished_{0};
  asio::thread_pool threads_{8};
};

/// A guest's address and token are the number of the operation that it takes part in; that is how a
/// service knows whose call it serves. How a call is answered depends on the seed, the operation
/// and the call, and on nothing else.
///
/// Threading: any.
class StressHost final : public ScriptedHost {
 public:
  struct Setting {
    std::uint32_t seed = 0;
    AnswerThreads* threads = nullptr;
    /// Called for each call that is never answered.
    std::function<void(std::size_t operation)> unanswered;
  };
  explicit StressHost(const Setting& setting);

  static std::shared_ptr<FakeGuest> guestOf(std::size_t operation, bool hasToken);
};

}  // namespace hlv::testing
