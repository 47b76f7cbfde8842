#include "Tests/Services/Talk.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace hlv::testing {
namespace {

sockaddr_in onLoopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
  address.sin_port = ::htons(static_cast<std::uint16_t>(port));
  return address;
}

void write(int descriptor, const std::string& bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const auto count = ::send(descriptor, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
    if (count <= 0) return;
    at += static_cast<std::size_t>(count);
  }
}

/// Until the other side ends, or has said `until`.
std::string read(int descriptor, const std::string& until = {}) {
  std::string bytes;
  std::array<char, 4096> piece{};
  while (until.empty() || bytes.find(until) == std::string::npos) {
    const auto count = ::recv(descriptor, piece.data(), piece.size(), 0);
    if (count <= 0) break;
    bytes.append(piece.data(), static_cast<std::size_t>(count));
  }
  return bytes;
}

int connectedTo(const std::string& url) {
  const auto address = onLoopback(std::stoi(url.substr(url.rfind(':') + 1)));
  const int descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
  if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
    throw std::runtime_error("the service cannot be reached");
  }
  return descriptor;
}

}  // namespace

std::string Heard::code() const {
  const auto json = body();
  return json.contains("error") ? json["error"].value("code", "") : "";
}

Heard say(const std::string& url, const std::string& bytes, bool isAll) {
  const int descriptor = connectedTo(url);
  write(descriptor, bytes);
  if (isAll) ::shutdown(descriptor, SHUT_WR);
  auto all = read(descriptor);
  ::close(descriptor);
  // The leave to send a body, for which a request may ask, is no answer.
  if (all.starts_with("HTTP/1.1 100 ")) all.erase(0, all.find("\r\n\r\n") + 4);
  const auto end = all.find("\r\n\r\n");
  if (end == std::string::npos || !all.starts_with("HTTP/")) return {};
  return {std::stoi(all.substr(9, 3)), all.substr(0, end), all.substr(end + 4)};
}

Heard ask(const std::string& url, const std::string& request, const std::string& body,
          const std::string& headers) {
  auto bytes = request + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + headers;
  if (!body.empty()) bytes += "Content-Type: application/json\r\n";
  return say(url, bytes + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
}

Listening::Listening(const std::string& url, const std::string& bytes)
    : descriptor_(connectedTo(url)) {
  write(descriptor_, bytes);
}

Listening::~Listening() { ::close(descriptor_); }

std::string Listening::until(const std::string& words) {
  const auto find = [&] { return words.empty() ? std::string::npos : heard_.find(words); };
  while (find() == std::string::npos) {
    std::array<char, 4096> piece{};
    const auto count = ::recv(descriptor_, piece.data(), piece.size(), 0);
    if (count <= 0) return std::exchange(heard_, {});
    heard_.append(piece.data(), static_cast<std::size_t>(count));
  }
  const auto end = find() + words.size();
  auto told = heard_.substr(0, end);
  heard_.erase(0, end);
  return told;
}

CannedServer::CannedServer(std::string answer, bool holds)
    : answer_(std::move(answer)), holds_(holds), listening_(::socket(AF_INET, SOCK_STREAM, 0)) {
  auto address = onLoopback(0);
  socklen_t size = sizeof(address);
  auto* raw = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listening_, raw, size) != 0 || ::listen(listening_, 16) != 0 ||
      ::getsockname(listening_, raw, &size) != 0) {
    throw std::runtime_error("no port to listen on");
  }
  port_ = ::ntohs(address.sin_port);
  thread_ = std::thread([this] { serve(); });
}

CannedServer::~CannedServer() {
  ::shutdown(listening_, SHUT_RDWR);
  thread_.join();
  ::close(listening_);
  for (const int descriptor : held_) ::close(descriptor);
}

std::string CannedServer::url() const { return "http://127.0.0.1:" + std::to_string(port_); }

void CannedServer::serve() {
  for (;;) {
    const int descriptor = ::accept(listening_, nullptr, nullptr);
    if (descriptor < 0) return;
    read(descriptor, "\r\n\r\n");
    write(descriptor, answer_);
    if (holds_) {
      held_.push_back(descriptor);
    } else {
      ::shutdown(descriptor, SHUT_WR);
      read(descriptor);
      ::close(descriptor);
    }
  }
}

}  // namespace hlv::testing
