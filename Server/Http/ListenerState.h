// What the connections of a listener share. Private to the listener.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Server/Http/HttpListener.h"

namespace hlv::server {

class Connection;

/// Threading: any, but for `connections`.
class ListenerState {
 public:
  ListenerState(ListenOptions listenOptions, HttpHandler& requestHandler, std::size_t loops)
      : options(std::move(listenOptions)), handler(requestHandler), connections(loops) {}

  /// While one exists, the listener waits with its end.
  class Presence {
   public:
    explicit Presence(std::shared_ptr<ListenerState> state) : state_(std::move(state)) {
      ++state_->present_;
    }
    Presence(const Presence&) = delete;
    Presence& operator=(const Presence&) = delete;
    ~Presence() {
      const std::lock_guard lock(state_->mutex_);
      if (--state_->present_ == 0) state_->ended_.notify_all();
    }

   private:
    const std::shared_ptr<ListenerState> state_;
  };

  std::size_t present() const { return present_; }
  void waitUntilNoneIsPresent() {
    std::unique_lock lock(mutex_);
    ended_.wait(lock, [&] { return present_ == 0; });
  }

  const ListenOptions options;
  HttpHandler& handler;
  std::atomic<bool> isClosing{false};
  /// By loop; each set is its loop's alone.
  std::vector<std::unordered_set<Connection*>> connections;

 private:
  std::atomic<std::size_t> present_{0};
  std::mutex mutex_;
  std::condition_variable ended_;
};

}  // namespace hlv::server
