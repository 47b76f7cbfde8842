#include "Client/HttpExchange.h"

#include <algorithm>
#include <boost/asio/connect.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/write.hpp>
#include <utility>

#include "Client/ServiceErrors.h"
#include "Values/Wiped.h"

namespace hlv::client {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using sandbox::TransportErrorCode;
namespace {

constexpr std::uint32_t largestHead = 16U * 1024;
constexpr std::uint64_t largestBody = 1024U * 1024;
constexpr std::size_t connectionsKept = 64;

std::string addressOf(const ServiceURL& url) { return url.host + ":" + url.port; }

/// A text that cannot stand in a head is left out, and the service misses it.
template <class Name>
void setText(http::request<http::string_body>& message, Name name, const NullableString& text) {
  if (text && std::none_of(text->begin(), text->end(), [](char character) {
        return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
      })) {
    message.set(name, *text);
  }
}

http::request<http::string_body> written(const ServiceURL& url, ClientRequest& request) {
  http::request<http::string_body> message;
  message.method_string(request.method);
  message.target(url.path + request.target);
  message.version(11);
  message.set(http::field::host, addressOf(url));
  setText(message, "X-API-Key", request.apiKey);
  if (request.session) setText(message, http::field::authorization, "Bearer " + *request.session);
  setText(message, "Idempotency-Key", request.idempotencyKey);
  if (!request.body.is_null()) {
    message.set(http::field::content_type, "application/json");
    message.body() = sandbox::textOf(request.body);
    sandbox::wipeTexts(request.body);
  }
  message.prepare_payload();
  return message;
}

/// Whether a failure to read is one of what was read, rather than of the connection.
bool isUnreadable(const boost::system::error_code& problem) {
  return problem.category() == http::make_error_code(http::error::bad_line_ending).category() &&
         problem != http::error::end_of_stream && problem != http::error::partial_message;
}

}  // namespace

std::optional<KeptConnections::Socket> KeptConnections::take(const std::string& address) {
  auto& sockets = sockets_[address];
  while (!sockets.empty()) {
    auto socket = std::move(sockets.back());
    sockets.pop_back();
    // Nothing is to be read from a connection on which no request is open; not even its end.
    char byte = 0;
    boost::system::error_code problem;
    socket.receive(asio::buffer(&byte, 1), tcp::socket::message_peek, problem);
    if (problem == asio::error::would_block) return socket;
  }
  return std::nullopt;
}

void KeptConnections::keep(const std::string& address, Socket socket) {
  auto& sockets = sockets_[address];
  if (sockets.size() < connectionsKept) sockets.push_back(std::move(socket));
}

void HttpExchange::begin(asio::io_context& context, KeptConnections& kept, const ServiceURL& url,
                         ClientRequest request, std::chrono::milliseconds timeout,
                         HttpLoop::Completion completion) {
  const std::shared_ptr<HttpExchange> exchange(
      new HttpExchange(context, kept, url, std::move(request), std::move(completion)));
  exchange->startTimer(timeout);
  if (auto socket = kept.take(addressOf(url))) {
    exchange->socket_ = std::move(*socket);
    exchange->isKeptConnection_ = true;
    exchange->write();
  } else {
    exchange->resolve();
  }
}

HttpExchange::HttpExchange(asio::io_context& context, KeptConnections& kept, const ServiceURL& url,
                           ClientRequest request, HttpLoop::Completion completion)
    : kept_(kept),
      url_(url),
      request_(written(url, request)),
      mayBeRepeated_(request.method == "GET" || request.idempotencyKey),
      completion_(std::move(completion)),
      timer_(context),
      resolver_(context),
      socket_(context) {}

HttpExchange::~HttpExchange() { wipe(request_.body()); }

void HttpExchange::startTimer(std::chrono::milliseconds timeout) {
  timer_.expires_after(timeout);
  timer_.async_wait([self = shared_from_this()](const ErrorCode& problem) {
    if (!problem) self->end({transportError(TransportErrorCode::timedOut), nullptr});
  });
}

void HttpExchange::resolve() {
  ErrorCode isName;
  const auto address = asio::ip::make_address_v4(url_.host, isName);
  if (!isName) {
    const auto port = static_cast<std::uint16_t>(std::stoi(url_.port));
    return connect(Resolver::results_type::create(tcp::endpoint(address, port), "", ""));
  }
  resolver_.async_resolve(tcp::v4(), url_.host, url_.port,
                          [self = shared_from_this()](const ErrorCode& problem,
                                                      const Resolver::results_type& addresses) {
                            if (self->hasEnded_) return;
                            if (problem) return self->endBroken(TransportErrorCode::unreachable);
                            self->connect(addresses);
                          });
}

void HttpExchange::connect(const Resolver::results_type& addresses) {
  asio::async_connect(socket_, addresses,
                      [self = shared_from_this()](const ErrorCode& problem, const tcp::endpoint&) {
                        if (self->hasEnded_) return;
                        if (problem) return self->endBroken(TransportErrorCode::unreachable);
                        ErrorCode ignored;
                        self->socket_.set_option(tcp::no_delay(true), ignored);
                        self->socket_.non_blocking(true, ignored);
                        self->write();
                      });
}

void HttpExchange::write() {
  http::async_write(socket_, request_,
                    [self = shared_from_this()](const ErrorCode& problem, std::size_t) {
                      if (self->hasEnded_) return;
                      if (problem) return self->endBroken(TransportErrorCode::broken);
                      self->read();
                    });
}

void HttpExchange::read() {
  parser_.emplace();
  parser_->header_limit(largestHead);
  parser_->body_limit(largestBody);
  http::async_read(socket_, buffer_, *parser_,
                   [self = shared_from_this()](const ErrorCode& problem, std::size_t) {
                     if (self->hasEnded_) return;
                     if (!problem) return self->endWithReply();
                     self->endBroken(isUnreadable(problem) ? TransportErrorCode::unreadable
                                                           : TransportErrorCode::broken);
                   });
}

void HttpExchange::endBroken(TransportErrorCode code) {
  const bool nothingCame = !parser_ || !parser_->got_some();
  if (isKeptConnection_ && nothingCame && mayBeRepeated_ && code == TransportErrorCode::broken) {
    isKeptConnection_ = false;
    socket_ = KeptConnections::Socket(socket_.get_executor());
    return resolve();
  }
  end({transportError(code), nullptr});
}

void HttpExchange::endWithReply() {
  const auto& reply = parser_->get();
  // More than one reply to one request: whose the next one is, nobody knows.
  if (parser_->keep_alive() && buffer_.size() == 0) {
    kept_.keep(addressOf(url_), std::move(socket_));
  }
  end(replyOf(static_cast<int>(reply.result_int()), reply.body()));
}

void HttpExchange::end(ClientReply reply) {
  if (std::exchange(hasEnded_, true)) return;
  timer_.cancel();
  resolver_.cancel();
  ErrorCode ignored;
  socket_.close(ignored);
  wipe(request_.body());
  // The completion may be the last to hold the loop, and is freed with this call.
  std::exchange(completion_, nullptr)(std::move(reply));
}

}  // namespace hlv::client
