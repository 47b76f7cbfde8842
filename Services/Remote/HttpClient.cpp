#include "Services/Remote/HttpClient.h"

#include <fcntl.h>
#include <netdb.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <memory>
#include <string_view>

#include "Sandbox/TransportError.h"
#include "Services/Http/ErrorBody.h"
#include "Services/Http/Socket.h"
#include "Services/Wiped.h"

namespace hlv::services {

using sandbox::transportError;
using sandbox::TransportErrorCode;
namespace {

constexpr std::size_t largestHead = 16UL * 1024;
constexpr std::size_t largestBody = 1024UL * 1024;
constexpr std::string_view headEnd = "\r\n\r\n";

/// Ends an exchange.
struct Failed {
  TransportErrorCode code;
};

void check(Socket::Outcome outcome, TransportErrorCode otherwise) {
  if (outcome == Socket::Outcome::done) return;
  throw Failed{outcome == Socket::Outcome::timedOut ? TransportErrorCode::timedOut : otherwise};
}

struct AddressesEnd {
  void operator()(addrinfo* addresses) const { ::freeaddrinfo(addresses); }
};

std::unique_ptr<Socket> connect(const ServiceURL& url, Socket::Clock::time_point deadline) {
  addrinfo wanted{};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (::getaddrinfo(url.host.c_str(), url.port.c_str(), &wanted, &found) != 0) {
    throw Failed{TransportErrorCode::unreachable};
  }
  const std::unique_ptr<addrinfo, AddressesEnd> addresses(found);
  auto socket = std::make_unique<Socket>(
      ::socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (socket->descriptor() < 0) throw Failed{TransportErrorCode::unreachable};
  if (::connect(socket->descriptor(), found->ai_addr, found->ai_addrlen) == 0) return socket;
  if (errno != EINPROGRESS) throw Failed{TransportErrorCode::unreachable};
  check(socket->awaitWritable(deadline), TransportErrorCode::unreachable);
  int problem = 0;
  socklen_t size = sizeof(problem);
  if (::getsockopt(socket->descriptor(), SOL_SOCKET, SO_ERROR, &problem, &size) != 0 ||
      problem != 0) {
    throw Failed{TransportErrorCode::unreachable};
  }
  return socket;
}

void write(Socket& socket, std::string_view bytes, Socket::Clock::time_point deadline) {
  while (!bytes.empty()) {
    const auto transfer = socket.write(bytes.data(), bytes.size(), deadline);
    check(transfer.outcome, TransportErrorCode::broken);
    bytes.remove_prefix(transfer.bytes);
  }
}

char lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
}

/// The status and the length of the body in a head; throws when it is none of a service's.
std::pair<int, std::size_t> readHead(std::string_view head) {
  const auto number = [](std::string_view text) {
    std::size_t value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size()) {
      throw Failed{TransportErrorCode::unreadable};
    }
    return value;
  };
  if (!head.starts_with("HTTP/1.1 ") || head.size() < 12) {
    throw Failed{TransportErrorCode::unreadable};
  }
  const auto status = number(head.substr(9, 3));
  std::string names(head);
  std::transform(names.begin(), names.end(), names.begin(), lower);
  constexpr std::string_view lengthName = "\r\ncontent-length:";
  const auto at = names.find(lengthName);
  if (at == std::string::npos) return {static_cast<int>(status), 0};
  auto length = head.substr(at + lengthName.size());
  length = length.substr(0, length.find('\r'));
  length.remove_prefix(std::min(length.size(), length.find_first_not_of(' ')));
  const auto bytes = number(length);
  if (bytes > largestBody) throw Failed{TransportErrorCode::unreadable};
  return {static_cast<int>(status), bytes};
}

struct Received {
  int status;
  std::string body;
};

Received read(Socket& socket, Socket::Clock::time_point deadline) {
  std::string bytes;
  std::array<char, 4096> piece{};
  const auto readMore = [&] {
    const auto transfer = socket.read(piece.data(), piece.size(), deadline);
    check(transfer.outcome, TransportErrorCode::broken);
    bytes.append(piece.data(), transfer.bytes);
  };
  std::size_t end = 0;
  while ((end = bytes.find(headEnd)) == std::string::npos) {
    if (bytes.size() > largestHead) throw Failed{TransportErrorCode::unreadable};
    readMore();
  }
  const auto [status, size] = readHead(std::string_view(bytes).substr(0, end));
  const auto begin = end + headEnd.size();
  while (bytes.size() < begin + size) readMore();
  return {status, bytes.substr(begin, size)};
}

std::string written(const ClientRequest& request, const ServiceURL& url) {
  auto body = request.body.is_null() ? std::string() : textOf(request.body);
  const Wiped wiped(body);
  std::string text = request.method + " " + request.target + " HTTP/1.1\r\nHost: " + url.host +
                     ":" + url.port + "\r\nConnection: close\r\n";
  if (request.apiKey) text += "X-API-Key: " + *request.apiKey + "\r\n";
  if (!request.body.is_null()) text += "Content-Type: application/json\r\n";
  text += "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
  // In one piece, so that growing leaves no copy behind.
  std::string whole;
  whole.reserve(text.size() + body.size());
  return whole.append(text).append(body);
}

ClientAnswer answerIn(const Received& received) {
  Json body;
  if (!received.body.empty()) {
    bool isTooDeep = false;
    body = Json::parse(
        received.body,
        [&](int depth, Json::parse_event_t, Json&) {
          isTooDeep = isTooDeep || depth > 16;
          return !isTooDeep;
        },
        false);
    if (body.is_discarded() || isTooDeep) throw Failed{TransportErrorCode::unreadable};
  }
  if (received.status >= 200 && received.status < 300) return {nullptr, std::move(body)};
  auto error = errorIn(body);
  if (!error) throw Failed{TransportErrorCode::unreadable};
  return {std::move(error), nullptr};
}

}  // namespace

ClientAnswer HttpClient::send(ClientRequest request) const {
  const auto deadline = Socket::Clock::now() + patience_;
  try {
    const auto socket = connect(url_, deadline);
    {
      auto text = written(request, url_);
      wipeTexts(request.body);
      const Wiped wiped(text);
      write(*socket, text, deadline);
    }
    return answerIn(read(*socket, deadline));
  } catch (const Failed& failed) {
    return {transportError(failed.code), nullptr};
  }
}

}  // namespace hlv::services
