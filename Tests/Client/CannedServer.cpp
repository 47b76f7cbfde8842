#include "Tests/Client/CannedServer.h"

#include <sys/socket.h>

#include <utility>

namespace hlv::testing {

namespace asio = boost::asio;
using asio::ip::tcp;

CannedServer::CannedServer(Reply reply)
    : CannedServer(Script([reply = std::move(reply)](const Request&) { return reply; })) {}

CannedServer::CannedServer(Script script)
    : script_(std::move(script)),
      acceptor_(context_, {asio::ip::address_v4::loopback(), 0}),
      accepting_([this] { accept(); }) {}

CannedServer::~CannedServer() {
  ::shutdown(acceptor_.native_handle(), SHUT_RDWR);
  accepting_.join();
  for (auto& client : clients_) client.end(tcp::socket::shutdown_both);
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
  for (boost::system::error_code error;;) {
    auto socket = acceptor_.accept(error);
    if (error) return;
    auto& client = clients_.emplace_back(std::move(socket));
    threads_.emplace_back(
        [this, &client, number = static_cast<int>(clients_.size())] { serve(client, number); });
  }
}

void CannedServer::serve(RawClient& client, int connection) {
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

}  // namespace hlv::testing
