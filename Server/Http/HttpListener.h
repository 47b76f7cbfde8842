// Where requests arrive over HTTP: one port.
#pragma once

#include <memory>

#include "Server/Http/EventLoops.h"
#include "Server/Http/HttpMessages.h"
#include "Server/Http/ListenOptions.h"

namespace hlv::sandbox::server {

struct ListenerState;

/// Speaks HTTP/1.1 and 1.0 with kept connections; a connection's requests are served one after the
/// other. No thread waits for a reply. A client that closes its side of the connection has left:
/// what was held for it is freed at once. Writes no log.
///
/// Threading: any, but for the destructor, which runs on no loop's thread. After it the handler is
/// not called any more.
class HttpListener {
 public:
  /// Takes connections at once. `loops` and `handler` outlive the listener. Throws `Problem`, and
  /// changes nothing, when the port is taken or the address refused.
  HttpListener(EventLoops& loops, ListenOptions options, HttpHandler& handler);
  /// The port that a listener would have now; throws as it would. Holds it for a moment.
  static int probe(const ListenOptions& options);
  /// Within a second: idle connections and event streams are closed, requests that are held get no
  /// reply, replies under way have half a second to leave.
  ~HttpListener();
  HttpListener(const HttpListener&) = delete;
  HttpListener& operator=(const HttpListener&) = delete;

  int port() const { return port_; }

 private:
  EventLoops& loops_;
  std::shared_ptr<ListenerState> state_;
  int port_ = 0;
};

}  // namespace hlv::sandbox::server
