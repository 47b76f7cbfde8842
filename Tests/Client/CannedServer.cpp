#include "Tests/Client/CannedServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace hlv::testing {
namespace {

constexpr const char* headEnd = "\r\n\r\n";

std::size_t sizeOf(const CannedServer::Request& request) {
  const auto length = request.header("Content-Length");
  return request.text.find(headEnd) + 4 + (length.empty() ? 0 : std::stoul(length));
}

/// Takes one request off `bytes`, reading more; empty when the other side has ended.
std::string read(int descriptor, std::string& bytes) {
  for (;;) {
    if (bytes.find(headEnd) != std::string::npos) {
      const auto size = sizeOf({0, bytes});
      if (bytes.size() >= size) {
        auto request = bytes.substr(0, size);
        bytes.erase(0, size);
        return request;
      }
    }
    std::array<char, 4096> piece{};
    const auto count = ::recv(descriptor, piece.data(), piece.size(), 0);
    if (count <= 0) return {};
    bytes.append(piece.data(), static_cast<std::size_t>(count));
  }
}

void write(int descriptor, const std::string& bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const auto count = ::send(descriptor, bytes.data() + at, bytes.size() - at, MSG_NOSIGNAL);
    if (count <= 0) return;
    at += static_cast<std::size_t>(count);
  }
}

}  // namespace

std::string CannedServer::Request::header(const std::string& name) const {
  const auto at = text.find("\r\n" + name + ": ");
  if (at == std::string::npos || at > text.find(headEnd)) return {};
  const auto begin = at + name.size() + 4;
  return text.substr(begin, text.find('\r', begin) - begin);
}

CannedServer::CannedServer(Reply reply)
    : CannedServer(Script([reply = std::move(reply)](const Request&) { return reply; })) {}

CannedServer::CannedServer(Script script)
    : script_(std::move(script)), listening_(::socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = ::htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* raw = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listening_, raw, size) != 0 || ::listen(listening_, 512) != 0 ||
      ::getsockname(listening_, raw, &size) != 0) {
    throw std::runtime_error("no port to listen on");
  }
  port_ = ::ntohs(address.sin_port);
  accepting_ = std::thread([this] { accept(); });
}

CannedServer::~CannedServer() {
  ::shutdown(listening_, SHUT_RDWR);
  accepting_.join();
  ::close(listening_);
  for (const int descriptor : descriptors_) ::shutdown(descriptor, SHUT_RDWR);
  for (auto& thread : threads_) thread.join();
  for (const int descriptor : descriptors_) ::close(descriptor);
}

std::vector<CannedServer::Request> CannedServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::vector<std::string> CannedServer::lines() const {
  std::vector<std::string> lines;
  for (const auto& request : requests()) {
    lines.push_back(request.line().substr(0, request.line().rfind(' ')));
  }
  return lines;
}

std::string CannedServer::http(const std::string& body, const std::string& status) {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
         body;
}

void CannedServer::accept() {
  for (;;) {
    const int descriptor = ::accept(listening_, nullptr, nullptr);
    if (descriptor < 0) return;
    descriptors_.push_back(descriptor);
    threads_.emplace_back([this, descriptor, connection = static_cast<int>(threads_.size()) + 1] {
      serve(descriptor, connection);
    });
  }
}

void CannedServer::serve(int descriptor, int connection) {
  std::string bytes;
  for (;;) {
    const Request request{connection, read(descriptor, bytes)};
    if (request.text.empty()) return;
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(request);
    }
    const auto reply = script_(request);
    write(descriptor, reply.bytes);
    if (reply.then == Then::hold) return;
    if (reply.then == Then::close) ::shutdown(descriptor, SHUT_WR);
  }
}

}  // namespace hlv::testing
