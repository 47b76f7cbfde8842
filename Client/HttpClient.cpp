#include "Client/HttpClient.h"

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/connect.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>
#include <future>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "Platform/Platform.h"
#include "Sandbox/Errors/SandboxError.h"
#include "Values/Wiped.h"

namespace hlv::client {
namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using ErrorCode = boost::system::error_code;
using sandbox::TransportErrorCode;

constexpr std::uint32_t largestHead = 16U * 1024;
constexpr std::uint64_t largestBody = 1024UL * 1024;
constexpr std::size_t connectionsKept = 64;
constexpr int deepest = 16;

/// Connections between two requests, by "HOST:PORT", the one that was used last at the end.
using KeptConnections = std::map<std::string, std::vector<tcp::socket>>;

/// Completes the operation with its error in `problem`.
auto into(ErrorCode& problem) { return asio::redirect_error(asio::use_awaitable, problem); }

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

ClientReply failure(TransportErrorCode code) { return {sandbox::transportError(code), nullptr}; }

ClientReply failureOf(const ErrorCode& problem) {
  // Of what was read, rather than of the connection.
  const bool isUnreadable =
      problem.category() == http::make_error_code(http::error::bad_line_ending).category() &&
      problem != http::error::end_of_stream && problem != http::error::partial_message;
  return failure(isUnreadable ? TransportErrorCode::unreadable : TransportErrorCode::broken);
}

ErrorPtr errorIn(const Json& body) {
  const auto& error = sandbox::objectIn(body, "error");
  const auto message = sandbox::requiredTextIn(error, "message");
  return sandbox::SandboxError::make(sandbox::requiredTextIn(error, "domain"),
                                     sandbox::requiredIntegerIn(error, "number"),
                                     message.empty() ? std::nullopt : NullableString(message));
}

/// The body of a success, the error that the service returned, or a transport error for a reply
/// that is none of a service's.
ClientReply replyOf(int status, const std::string& body) {
  try {
    auto json = body.empty() ? Json() : sandbox::parsed(body, deepest);
    if (status >= 200 && status < 300) return {nullptr, std::move(json)};
    return {errorIn(json), nullptr};
  } catch (const sandbox::InvalidRecord&) {
    return failure(TransportErrorCode::unreadable);
  }
}

/// One that the service has not closed.
std::optional<tcp::socket> take(std::vector<tcp::socket>& kept) {
  while (!kept.empty()) {
    auto socket = std::move(kept.back());
    kept.pop_back();
    // Nothing is to be read from a connection on which no request is open; not even its end.
    char byte = 0;
    ErrorCode problem;
    socket.receive(asio::buffer(&byte, 1), tcp::socket::message_peek, problem);
    if (problem == asio::error::would_block) return socket;
  }
  return std::nullopt;
}

/// One request and its reply. Ends with one error of `sandbox::transportErrorDomain` for whatever
/// goes wrong on the way. A request that may be repeated is sent again, once and on a new
/// connection, when a kept connection ended before anything of the reply came. What was sent is
/// overwritten, since it may hold card data.
///
/// Threading: the loop's thread.
class HttpExchange final : public std::enable_shared_from_this<HttpExchange> {
 public:
  HttpExchange(asio::io_context& context, KeptConnections& kept, const ServiceURL& url,
               ClientRequest request, HttpLoop::Completion completion)
      : kept_(kept[addressOf(url)]),
        url_(url),
        request_(written(url, request)),
        mayBeRepeated_(request.method == "GET" || request.idempotencyKey),
        completion_(std::move(completion)),
        timer_(context),
        socket_(context) {}
  ~HttpExchange() { wipe(request_.body()); }

  /// `timeout` is for the whole exchange.
  void begin(std::chrono::milliseconds timeout) {
    timer_.expires_after(timeout);
    timer_.async_wait([self = shared_from_this()](const ErrorCode& problem) {
      if (!problem) self->end(failure(TransportErrorCode::timedOut));
    });
    asio::co_spawn(
        socket_.get_executor(), [self = shared_from_this()] { return self->run(); },
        asio::detached);
  }

 private:
  asio::awaitable<void> run() {
    ErrorCode problem = asio::error::not_connected;
    if (auto socket = take(kept_)) {
      socket_ = std::move(*socket);
      problem = co_await writeAndRead();
      const bool hasBegun = parser_ && parser_->got_some();
      if (problem && (hasBegun || !mayBeRepeated_)) co_return end(failureOf(problem));
    }
    if (problem) {
      if (co_await connect()) co_return end(failure(TransportErrorCode::unreachable));
      problem = co_await writeAndRead();
    }
    if (problem) co_return end(failureOf(problem));
    const auto reply = parser_->release();
    // More than one reply to one request: whose the next one is, nobody knows.
    const bool isReusable = reply.keep_alive() && buffer_.size() == 0;
    if (isReusable && kept_.size() < connectionsKept) kept_.push_back(std::move(socket_));
    end(replyOf(static_cast<int>(reply.result_int()), reply.body()));
  }

  asio::awaitable<ErrorCode> connect() {
    ErrorCode problem;
    socket_ = tcp::socket(socket_.get_executor());
    tcp::resolver::results_type addresses;
    if (const auto address = asio::ip::make_address_v4(url_.host, problem); !problem) {
      // Needs no thread that resolves names.
      const auto port = static_cast<std::uint16_t>(std::stoi(url_.port));
      addresses = tcp::resolver::results_type::create(tcp::endpoint(address, port), "", "");
    } else {
      tcp::resolver resolver(socket_.get_executor());
      addresses = co_await resolver.async_resolve(tcp::v4(), url_.host, url_.port, into(problem));
    }
    // Nobody may be waiting any more by now.
    if (!problem && !completion_) problem = asio::error::operation_aborted;
    if (!problem) co_await asio::async_connect(socket_, addresses, into(problem));
    if (problem) co_return problem;
    socket_.set_option(tcp::no_delay(true), problem);
    socket_.non_blocking(true, problem);
    co_return ErrorCode();
  }

  asio::awaitable<ErrorCode> writeAndRead() {
    ErrorCode problem;
    parser_.emplace();
    parser_->header_limit(largestHead);
    parser_->body_limit(largestBody);
    co_await http::async_write(socket_, request_, into(problem));
    if (!problem) co_await http::async_read(socket_, buffer_, *parser_, into(problem));
    co_return problem;
  }

  void end(ClientReply reply) {
    if (!completion_) return;
    timer_.cancel();
    ErrorCode ignored;
    socket_.close(ignored);
    wipe(request_.body());
    // The completion may be the last to hold the loop, and is freed with this call.
    std::exchange(completion_, nullptr)(std::move(reply));
  }

  std::vector<tcp::socket>& kept_;
  const ServiceURL url_;
  http::request<http::string_body> request_;
  const bool mayBeRepeated_;
  HttpLoop::Completion completion_;
  asio::steady_timer timer_;
  tcp::socket socket_;
  boost::beast::flat_buffer buffer_;
  std::optional<http::response_parser<http::string_body>> parser_;
};

}  // namespace

struct HttpLoop::State {
  void begin(const ServiceURL& url, std::chrono::milliseconds timeout, RequestMaker make,
             Completion completion) {
    auto end = [this, completion = std::move(completion)](ClientReply reply) mutable {
      completion(std::move(reply));
      completion = nullptr;
      --unfinished;
      Platform::current()->mainQueue()->async([] {});
    };
    ClientRequest request;
    try {
      request = std::exchange(make, nullptr)();
    } catch (const sandbox::Refusal& refusal) {
      return end({refusal.error, nullptr});
    }
    std::make_shared<HttpExchange>(context, kept, url, std::move(request), std::move(end))
        ->begin(timeout);
  }

  // Destroyed last: sockets and timers need it.
  asio::io_context context{1};
  asio::executor_work_guard<asio::io_context::executor_type> work{context.get_executor()};
  KeptConnections kept;
  std::atomic<std::size_t> unfinished{0};
  std::atomic<std::thread::id> thread{};
};

HttpLoop::HttpLoop() : state_(std::make_shared<State>()) {}

HttpLoop::~HttpLoop() {
  state_->context.stop();
  if (!thread_.joinable()) return;
  if (isOwnThread()) {
    thread_.detach();
  } else {
    thread_.join();
  }
}

void HttpLoop::send(const ServiceURL& url, std::chrono::milliseconds timeout, RequestMaker request,
                    Completion completion) {
  std::call_once(started_, [this] {
    thread_ = std::thread([state = state_] {
      ::pthread_setname_np(::pthread_self(), "client");
      state->thread = std::this_thread::get_id();
      state->context.run();
    });
  });
  ++state_->unfinished;
  asio::post(state_->context, [state = state_.get(), url, timeout, request = std::move(request),
                               completion = std::move(completion)]() mutable {
    state->begin(url, timeout, std::move(request), std::move(completion));
  });
}

bool HttpLoop::isIdle() const { return state_->unfinished == 0; }

bool HttpLoop::isOwnThread() const { return state_->thread == std::this_thread::get_id(); }

ClientReply HttpClient::send(ClientRequest request) const {
  if (loop_->isOwnThread()) {
    return HttpClient(url_, timeout_, std::make_shared<HttpLoop>()).send(std::move(request));
  }
  const auto reply = std::make_shared<std::promise<ClientReply>>();
  auto coming = reply->get_future();
  const auto shared = std::make_shared<ClientRequest>(std::move(request));
  send([shared] { return std::move(*shared); },
       [reply](ClientReply come) { reply->set_value(std::move(come)); });
  return coming.get();
}

Json HttpClient::ask(const std::string& method, const std::string& target, Json body) const {
  // The provider takes any key.
  auto reply = send({method, target, std::move(body), "paylevenkit"});
  if (!reply.error) return std::move(reply.body);
  throw ClientError(reply.error->localizedDescription().value_or("The service cannot be used."));
}

}  // namespace hlv::client
