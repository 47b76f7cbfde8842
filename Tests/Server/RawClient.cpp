#include "Tests/Server/RawClient.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace hlv::testing {

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

RawClient::RawClient(int port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
  address.sin_port = ::htons(static_cast<std::uint16_t>(port));
  if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
    ::close(socket_);
    throw std::runtime_error("the listener cannot be reached");
  }
}

RawClient::~RawClient() {
  if (socket_ >= 0) ::close(socket_);
}

RawClient::RawClient(RawClient&& other) noexcept
    : socket_(std::exchange(other.socket_, -1)), received_(std::move(other.received_)) {}

RawClient& RawClient::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) break;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return *this;
}

bool RawClient::receiveMore() {
  std::array<char, 4096> piece{};
  const auto count = ::recv(socket_, piece.data(), piece.size(), 0);
  if (count < 0) wasReset_ = errno == ECONNRESET;
  if (count <= 0) return false;
  received_.append(piece.data(), static_cast<std::size_t>(count));
  return true;
}

std::string RawClient::receiveUntil(std::string_view words) {
  while (received_.find(words) == std::string::npos) {
    if (!receiveMore()) return std::exchange(received_, {});
  }
  const auto end = received_.find(words) + words.size();
  auto bytes = received_.substr(0, end);
  received_.erase(0, end);
  return bytes;
}

RawClient::Response RawClient::receive(bool isHead) {
  Response response;
  response.head = receiveUntil("\r\n\r\n");
  if (!response.head.starts_with("HTTP/1.")) return {};
  response.status = std::stoi(response.head.substr(9, 3));
  const auto length = response.header("Content-Length");
  const auto size = isHead || length.empty() ? 0 : std::stoul(length);
  while (received_.size() < size && receiveMore()) {
  }
  response.body = received_.substr(0, size);
  received_.erase(0, size);
  return response;
}

RawClient::Rest RawClient::receiveRest() {
  while (receiveMore()) {
  }
  return {std::exchange(received_, {}), wasReset_};
}

void RawClient::abort() {
  const linger atOnce{1, 0};
  ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof(atOnce));
  ::close(std::exchange(socket_, -1));
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
