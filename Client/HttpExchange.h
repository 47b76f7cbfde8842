// One request and its reply, on Boost.Beast. Private to this folder.
#pragma once

#include <boost/asio/awaitable.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Client/HttpClient.h"

namespace hlv::client {

/// Connections between two requests, by "HOST:PORT".
///
/// Threading: the loop's thread.
class KeptConnections {
 public:
  using Socket = boost::asio::ip::tcp::socket;

  /// The one that was used last, of those that the service has not closed.
  std::optional<Socket> take(const std::string& address);
  void keep(const std::string& address, Socket socket);

 private:
  std::map<std::string, std::vector<Socket>> sockets_;
};

/// Ends with one error of `sandbox::transportErrorDomain` for whatever goes wrong on the way. A
/// request that may be repeated is sent again, once and on a new connection, when a kept connection
/// ended before anything of the reply came. What was sent is overwritten, since it may hold card
/// data.
///
/// Threading: the loop's thread.
class HttpExchange final : public std::enable_shared_from_this<HttpExchange> {
 public:
  /// `timeout` is for the whole exchange.
  static void begin(boost::asio::io_context& context, KeptConnections& kept, const ServiceURL& url,
                    ClientRequest request, std::chrono::milliseconds timeout,
                    HttpLoop::Completion completion);
  ~HttpExchange();

 private:
  using ErrorCode = boost::system::error_code;
  using StringBody = boost::beast::http::string_body;

  HttpExchange(boost::asio::io_context& context, KeptConnections& kept, const ServiceURL& url,
               ClientRequest request, HttpLoop::Completion completion);

  boost::asio::awaitable<void> run();
  boost::asio::awaitable<ErrorCode> connect();
  boost::asio::awaitable<ErrorCode> writeAndRead();
  void end(ClientReply reply);

  KeptConnections& kept_;
  const ServiceURL url_;
  boost::beast::http::request<StringBody> request_;
  const bool mayBeRepeated_;
  HttpLoop::Completion completion_;
  boost::asio::steady_timer timer_;
  KeptConnections::Socket socket_;
  boost::beast::flat_buffer buffer_;
  std::optional<boost::beast::http::response_parser<StringBody>> parser_;
};

}  // namespace hlv::client
