// Where requests come in over HTTP: one port of one service. Private to the services.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "Services/Http/Exchange.h"
#include "Services/ServiceLimits.h"

namespace hlv::services {

/// Answers one request a connection, mostly in JSON, and gives every answer a number of its own in
/// `X-Request-Id`. Writes no log: a request may hold card data, and is overwritten once it was
/// handed on.
///
/// Threading: any, but for the destructor, which waits for the requests that are under way and so
/// runs on no thread of a handler's.
class Door {
 public:
  /// Refuses by throwing `Refused`; whatever else it throws is an answer 500. Called on several
  /// threads at once. The request is valid during the call only.
  using Handler = std::function<void(const HttpRequest&, const Reply&)>;

  struct Opened {
    /// Null when the port cannot be listened on.
    std::unique_ptr<Door> door;
    /// One plain sentence when it cannot.
    std::string problem;
  };

  /// Port 0 is any free one.
  static Opened open(const std::string& threadName, const std::string& address, int port,
                     const ServiceLimits& limits, Handler handler);
  /// Requests that still wait for an answer get none.
  ~Door();
  Door(const Door&) = delete;
  Door& operator=(const Door&) = delete;

  int port() const;

 private:
  class Listener;
  explicit Door(std::unique_ptr<Listener> listener);

  const std::unique_ptr<Listener> listener_;
};

}  // namespace hlv::services
