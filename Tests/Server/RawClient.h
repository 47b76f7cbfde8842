// A connection over which a test sends whatever it wants.
#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace hlv::testing {

namespace asio = boost::asio;
using asio::ip::tcp;

/// One connection to a port of this machine. Every wait ends with an answer of the other side.
///
/// Threading: one thread at a time.
class RawClient {
 public:
  struct Response {
    /// 0 where no response came.
    int status = 0;
    std::string head;
    std::string body;
    /// Of a header, or empty.
    std::string header(std::string_view name) const {
      const auto at = head.find("\r\n" + std::string(name) + ": ");
      if (at == std::string::npos) return {};
      const auto begin = at + name.size() + 4;
      return head.substr(begin, head.find("\r\n", begin) - begin);
    }
    /// `code` of an error's body, or empty.
    std::string code() const {
      const auto json = nlohmann::json::parse(body, nullptr, false);
      return json.is_object() && json.contains("error") ? json["error"].value("code", "") : "";
    }
  };
  struct Rest {
    std::string bytes;
    bool wasReset;
  };

  /// Throws where nothing listens.
  explicit RawClient(int port) : socket_(context()) {
    socket_.connect({asio::ip::address_v4::loopback(), static_cast<std::uint16_t>(port)});
  }

  RawClient& send(std::string_view bytes) {
    boost::system::error_code error;
    asio::write(socket_, asio::buffer(bytes), error);
    return *this;
  }
  /// The next message, and no byte of what follows. The response to a HEAD has no body.
  Response receive(bool isHead = false) {
    Response response;
    response.head = receiveUntil("\r\n\r\n");
    if (!response.head.ends_with("\r\n\r\n")) return {};
    response.status = std::stoi(response.head.substr(9, 3));
    const auto length = response.header("Content-Length");
    const auto size = isHead || length.empty() ? 0 : std::stoul(length);
    boost::system::error_code error;
    if (size > received_.size()) {
      asio::read(socket_, asio::dynamic_buffer(received_),
                 asio::transfer_exactly(size - received_.size()), error);
    }
    response.body = take(size);
    return response;
  }
  /// Everything up to and with `words`; less when the other side ends before.
  std::string receiveUntil(std::string_view words) {
    boost::system::error_code error;
    const auto end = asio::read_until(socket_, asio::dynamic_buffer(received_), words, error);
    return take(error ? received_.size() : end);
  }
  /// Everything until the other side ends.
  Rest receiveRest() {
    boost::system::error_code error;
    asio::read(socket_, asio::dynamic_buffer(received_), error);
    return {take(received_.size()), error == asio::error::connection_reset};
  }
  /// Ends with a reset.
  void abort() {
    socket_.set_option(asio::socket_base::linger(true, 0));
    socket_.close();
  }

 private:
  static asio::io_context& context() {
    static auto& only = *new asio::io_context;
    return only;
  }

  std::string take(std::size_t count) {
    auto bytes = received_.substr(0, count);
    received_.erase(0, count);
    return bytes;
  }

  tcp::socket socket_;
  std::string received_;
};

/// "GET /path HTTP/1.1" with a host and, if there is a body, what goes with it. `headers` end in a
/// line break each.
inline std::string requestOf(const std::string& methodAndTarget, const std::string& body = {},
                             const std::string& headers = {}) {
  auto bytes = methodAndTarget + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + headers;
  if (!body.empty()) {
    bytes +=
        "Content-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) + "\r\n";
  }
  return bytes + "\r\n" + body;
}
/// Sends it over a connection of its own.
inline RawClient::Response ask(int port, const std::string& methodAndTarget,
                               const std::string& body = {}, const std::string& headers = {}) {
  return RawClient(port)
      .send(requestOf(methodAndTarget, body, headers))
      .receive(methodAndTarget.starts_with("HEAD "));
}

}  // namespace hlv::testing
