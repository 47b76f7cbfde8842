#include "Tests/Client/CannedServer.h"

#include <sys/socket.h>

#include <boost/asio/read.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>
#include <utility>

namespace hlv::testing {

namespace asio = boost::asio;
using asio::ip::tcp;
using ErrorCode = boost::system::error_code;

std::string CannedServer::Request::header(const std::string& name) const {
  const auto at = text.find("\r\n" + name + ": ");
  if (at == std::string::npos || at > text.find("\r\n\r\n")) return {};
  const auto begin = at + name.size() + 4;
  return text.substr(begin, text.find('\r', begin) - begin);
}

CannedServer::CannedServer(Reply reply)
    : CannedServer(Script([reply = std::move(reply)](const Request&) { return reply; })) {}

CannedServer::CannedServer(Script script)
    : script_(std::move(script)),
      acceptor_(context_, {asio::ip::address_v4::loopback(), 0}),
      accepting_([this] { accept(); }) {}

CannedServer::~CannedServer() {
  ::shutdown(acceptor_.native_handle(), SHUT_RDWR);
  accepting_.join();
  ErrorCode ignored;
  for (auto& socket : sockets_) socket.shutdown(tcp::socket::shutdown_both, ignored);
  for (auto& thread : threads_) thread.join();
}

std::vector<CannedServer::Request> CannedServer::requests() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

std::string CannedServer::http(const std::string& body, const std::string& status) {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
         body;
}

void CannedServer::accept() {
  for (ErrorCode error;;) {
    auto socket = acceptor_.accept(error);
    if (error) return;
    auto& kept = sockets_.emplace_back(std::move(socket));
    threads_.emplace_back(
        [this, &kept, number = static_cast<int>(sockets_.size())] { serve(kept, number); });
  }
}

void CannedServer::serve(tcp::socket& socket, int connection) {
  std::string bytes;
  for (ErrorCode error;;) {
    Request request{connection, {}};
    const auto head = asio::read_until(socket, asio::dynamic_buffer(bytes), "\r\n\r\n", error);
    if (error) return;
    request.text = bytes.substr(0, head);
    const auto length = request.header("Content-Length");
    const auto size = head + (length.empty() ? 0 : std::stoul(length));
    if (size > bytes.size()) {
      asio::read(socket, asio::dynamic_buffer(bytes), asio::transfer_exactly(size - bytes.size()),
                 error);
    }
    request.text = bytes.substr(0, size);
    bytes.erase(0, size);
    {
      const std::lock_guard lock(mutex_);
      requests_.push_back(request);
    }
    const auto reply = script_(request);
    asio::write(socket, asio::buffer(reply.bytes), error);
    if (reply.then == Then::hold) return;
    if (reply.then == Then::close) socket.shutdown(tcp::socket::shutdown_send, error);
  }
}

}  // namespace hlv::testing
