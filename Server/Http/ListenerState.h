// What the connections of a listener share. Private to the listener.
#pragma once

#include <atomic>
#include <cstddef>
#include <future>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Server/Http/HttpListener.h"

namespace hlv::server {

class Connection;

/// While one of them holds it, the listener waits with its end.
///
/// Threading: any, but for `connections`.
struct ListenerState {
  ListenerState(ListenOptions listenOptions, HttpHandler& requestHandler, std::size_t loops)
      : options(std::move(listenOptions)), handler(requestHandler), connections(loops) {}
  ~ListenerState() { ended.set_value(); }

  const ListenOptions options;
  HttpHandler& handler;
  std::atomic<bool> isClosing{false};
  /// By loop; each set is its loop's alone.
  std::vector<std::unordered_set<Connection*>> connections;
  std::promise<void> ended;
};

}  // namespace hlv::server
