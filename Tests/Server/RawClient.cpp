#include "Tests/Server/RawClient.h"

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>
#include <nlohmann/json.hpp>

namespace hlv::testing {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;

asio::io_context& context() {
  static auto& only = *new asio::io_context;
  return only;
}

}  // namespace

std::string RawClient::Response::header(std::string_view name) const {
  const auto at = head.find("\r\n" + std::string(name) + ": ");
  if (at == std::string::npos) return {};
  const auto begin = at + name.size() + 4;
  return head.substr(begin, head.find("\r\n", begin) - begin);
}

std::string RawClient::Response::code() const {
  const auto json = nlohmann::json::parse(body, nullptr, false);
  return json.is_object() && json.contains("error") ? json["error"].value("code", "") : "";
}

RawClient::RawClient(int port) : socket_(context()) {
  socket_.connect({asio::ip::address_v4::loopback(), static_cast<std::uint16_t>(port)});
}

RawClient& RawClient::send(std::string_view bytes) {
  boost::system::error_code error;
  asio::write(socket_, asio::buffer(bytes), error);
  return *this;
}

std::string RawClient::take(std::size_t count) {
  auto bytes = received_.substr(0, count);
  received_.erase(0, count);
  return bytes;
}

std::string RawClient::receiveUntil(std::string_view words) {
  boost::system::error_code error;
  const auto end = asio::read_until(socket_, asio::dynamic_buffer(received_), words, error);
  return take(error ? received_.size() : end);
}

RawClient::Response RawClient::receive(bool isHead) {
  Response response;
  response.head = receiveUntil("\r\n\r\n");
  if (!response.head.ends_with("\r\n\r\n")) return {};
  if (response.head.starts_with("HTTP/1.")) response.status = std::stoi(response.head.substr(9, 3));
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

RawClient::Rest RawClient::receiveRest() {
  boost::system::error_code error;
  asio::read(socket_, asio::dynamic_buffer(received_), error);
  return {take(received_.size()), error == asio::error::connection_reset};
}

void RawClient::end(tcp::socket::shutdown_type what) {
  boost::system::error_code ignored;
  socket_.shutdown(what, ignored);
}

void RawClient::abort() {
  socket_.set_option(asio::socket_base::linger(true, 0));
  socket_.close();
}

std::string requestOf(const std::string& methodAndTarget, const std::string& body,
                      const std::string& headers) {
  auto bytes = methodAndTarget + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + headers;
  if (!body.empty()) {
    bytes +=
        "Content-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) + "\r\n";
  }
  return bytes + "\r\n" + body;
}

RawClient::Response ask(int port, const std::string& methodAndTarget, const std::string& body,
                        const std::string& headers) {
  return RawClient(port)
      .send(requestOf(methodAndTarget, body, headers))
      .receive(methodAndTarget.starts_with("HEAD "));
}

}  // namespace hlv::testing
