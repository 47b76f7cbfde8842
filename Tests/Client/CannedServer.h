// A server that replies whatever a test wants.
#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

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
  explicit CannedServer(Script script);
  /// Replies the same to everything.
  explicit CannedServer(Reply reply);
  /// Ends every connection.
  ~CannedServer();
  CannedServer(const CannedServer&) = delete;
  CannedServer& operator=(const CannedServer&) = delete;

  std::string url() const {
    return "http://127.0.0.1:" + std::to_string(acceptor_.local_endpoint().port());
  }
  /// What has arrived, in the order of arrival.
  std::vector<Request> requests() const;

  /// A whole reply with that body.
  static std::string http(const std::string& body, const std::string& status = "200 OK");

 private:
  void accept();
  void serve(RawClient& client, int connection);

  const Script script_;
  boost::asio::io_context context_;
  boost::asio::ip::tcp::acceptor acceptor_;
  mutable std::mutex mutex_;
  std::vector<Request> requests_;
  std::deque<RawClient> clients_;
  std::vector<std::thread> threads_;
  std::thread accepting_;
};

}  // namespace hlv::testing
