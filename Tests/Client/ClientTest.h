// A server that replies whatever a test wants, and a host whose services it is.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "Client/RemoteHost.h"
#include "Server/Http/HttpListener.h"
#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::testing {

/// Listens on a port of its own. A reply is what a fault of the connection makes of none.
///
/// Threading: any.
class CannedServer final : sandbox::server::HttpHandler {
 public:
  using Then = sandbox::server::OutgoingReply::Then;
  struct Reply {
    std::string bytes;
    Then then = Then::drain;
  };
  struct Request : sandbox::server::HttpRequest {
    /// In the order of their first requests, from 1 on.
    std::size_t connection = 0;
  };
  using Script = std::function<Reply(const Request&)>;

  /// The script runs on the listener's loops.
  explicit CannedServer(Script script) : script_(std::move(script)) {}
  /// Replies the same to everything.
  explicit CannedServer(Reply reply)
      : CannedServer(Script([reply = std::move(reply)](const Request&) { return reply; })) {}

  std::string url() const { return "http://127.0.0.1:" + std::to_string(listener_.port()); }
  /// What has arrived, in the order of arrival.
  std::vector<Request> requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
  }

  /// A whole reply with that body.
  static std::string http(const std::string& body, const std::string& status = "200 OK") {
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n\r\n" + body;
  }

 private:
  void handle(const sandbox::server::HttpRequest& arrived, sandbox::server::Reply reply) override {
    Request request{arrived};
    {
      const std::lock_guard lock(mutex_);
      request.connection =
          connections_.emplace(arrived.caller, connections_.size() + 1).first->second;
      requests_.push_back(request);
    }
    reply({.fault = [canned = script_(request)](sandbox::server::OutgoingReply& outgoing) {
      outgoing.bytes = canned.bytes;
      outgoing.then = canned.then;
    }});
  }
  void finished(const sandbox::server::FinishedRequest&) override {}

  const Script script_;
  mutable std::mutex mutex_;
  std::vector<Request> requests_;
  /// By the caller's address and port.
  std::map<std::string, std::size_t> connections_;
  sandbox::server::EventLoops loops_{2};
  sandbox::server::HttpListener listener_{loops_, {}, *this};
};

}  // namespace hlv::testing

namespace hlv::client {

using sandbox::nameOf;
using testing::CannedServer;
using Then = CannedServer::Then;

class ClientTest : public sandbox::SandboxTest {
 protected:
  ClientTest() { start(); }

  /// The services are a host's at these places, whose guest is signed in on this side.
  void connect(const std::string& backendURL, const std::string& providerURL,
               std::chrono::milliseconds timeout = std::chrono::seconds(30)) {
    remote = RemoteHost::open(sandbox, {backendURL, providerURL, timeout});
    use(remote);
    guest = remote->currentGuest();
  }
  void connect(const CannedServer& server) { connect(server.url(), server.url()); }
  bool isQuiet() const override { return remote->isQuiet(); }

  std::shared_ptr<RemoteHost> remote;
};

}  // namespace hlv::client
