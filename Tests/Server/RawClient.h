// A connection over which a test sends whatever it wants.
#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <string>
#include <string_view>

namespace hlv::testing {

/// One connection to a port of this machine. Every wait ends with an answer of the other side.
///
/// Threading: one thread at a time.
class RawClient {
 public:
  /// A response, or the request of a client.
  struct Response {
    /// 0 where no response came.
    int status = 0;
    std::string head;
    std::string body;
    /// Of a header, or empty.
    std::string header(std::string_view name) const;
    /// `code` of an error's body, or empty.
    std::string code() const;
  };
  struct Rest {
    std::string bytes;
    bool wasReset;
  };

  /// Throws where nothing listens.
  explicit RawClient(int port);
  explicit RawClient(boost::asio::ip::tcp::socket socket) : socket_(std::move(socket)) {}

  RawClient& send(std::string_view bytes);
  /// The next message, and no byte of what follows. The response to a HEAD has no body.
  Response receive(bool isHead = false);
  /// Everything up to and with `words`; less when the other side ends before.
  std::string receiveUntil(std::string_view words);
  /// Everything until the other side ends.
  Rest receiveRest();
  void end(boost::asio::ip::tcp::socket::shutdown_type what);
  /// Ends with a reset.
  void abort();

 private:
  std::string take(std::size_t count);

  boost::asio::ip::tcp::socket socket_;
  std::string received_;
};

/// "GET /path HTTP/1.1" with a host and, if there is a body, what goes with it. `headers` end in a
/// line break each.
std::string requestOf(const std::string& methodAndTarget, const std::string& body = {},
                      const std::string& headers = {});
/// Sends it over a connection of its own.
RawClient::Response ask(int port, const std::string& methodAndTarget, const std::string& body = {},
                        const std::string& headers = {});

}  // namespace hlv::testing
