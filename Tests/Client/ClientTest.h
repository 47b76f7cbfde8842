// A server that replies whatever a test wants, and a host whose services it is.
#pragma once

#include <sys/socket.h>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Client/RemoteHost.h"
#include "Tests/Sandbox/SandboxTest.h"
#include "Tests/Server/RawClient.h"

namespace hlv::testing {

/// Listens on a port of its own and serves every connection on a thread.
///
/// Threading: any.
class CannedServer {
 public:
  enum class Then {
    /// The connection stays open for the next request.
    keep,
    close,
    /// Nothing more is read or written until the server goes.
    hold
  };
  struct Reply {
    std::string bytes;
    Then then = Then::close;
  };
  struct Request : RawClient::Response {
    int connection = 0;
    /// "GET /path HTTP/1.1"
    std::string line() const { return head.substr(0, head.find('\r')); }
  };
  using Script = std::function<Reply(const Request&)>;

  /// The script runs on the connections' threads.
  explicit CannedServer(Script script)
      : script_(std::move(script)),
        acceptor_(context_, {asio::ip::address_v4::loopback(), 0}),
        accepting_([this] { accept(); }) {}
  /// Replies the same to everything.
  explicit CannedServer(Reply reply)
      : CannedServer(Script([reply = std::move(reply)](const Request&) { return reply; })) {}
  /// Ends every connection.
  ~CannedServer() {
    ::shutdown(acceptor_.native_handle(), SHUT_RDWR);
    accepting_.join();
    for (auto& client : clients_) client.end(tcp::socket::shutdown_both);
    for (auto& thread : threads_) thread.join();
  }
  CannedServer(const CannedServer&) = delete;
  CannedServer& operator=(const CannedServer&) = delete;

  std::string url() const {
    return "http://127.0.0.1:" + std::to_string(acceptor_.local_endpoint().port());
  }
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
  void accept() {
    for (boost::system::error_code error;;) {
      auto socket = acceptor_.accept(error);
      if (error) return;
      auto& client = clients_.emplace_back(std::move(socket));
      threads_.emplace_back(
          [this, &client, number = static_cast<int>(clients_.size())] { serve(client, number); });
    }
  }
  void serve(RawClient& client, int connection) {
    while (true) {
      const Request request{client.receive(), connection};
      if (request.head.empty()) return;
      {
        const std::lock_guard lock(mutex_);
        requests_.push_back(request);
      }
      const auto reply = script_(request);
      client.send(reply.bytes);
      if (reply.then == Then::hold) return;
      if (reply.then == Then::close) client.end(tcp::socket::shutdown_send);
    }
  }

  const Script script_;
  asio::io_context context_;
  tcp::acceptor acceptor_;
  mutable std::mutex mutex_;
  std::vector<Request> requests_;
  std::deque<RawClient> clients_;
  std::vector<std::thread> threads_;
  std::thread accepting_;
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
