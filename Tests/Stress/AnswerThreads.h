// The threads on which the services of a stress test answer.
#pragma once

#include <asio/post.hpp>
#include <asio/thread_pool.hpp>
#include <atomic>
#include <functional>
#include <utility>

namespace hlv::testing {

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

}  // namespace hlv::testing
