#include "Server/Http/Connection.h"

#include <algorithm>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/http/read.hpp>
#include <utility>

#include "Values/Wiped.h"

namespace hlv::sandbox::server {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using namespace std::chrono_literals;

constexpr std::size_t firstRead = 2048;
constexpr auto farewell = 1'000ms;
constexpr auto lastReplies = 500ms;
constexpr auto eventPause = 50ms;
/// How many times in a row a stream may have nothing new before an empty line shows both
/// sides that the other is there.
constexpr int mostSilence = 100;

bool isOfTransport(const beast::error_code& error) {
  return error.category() != http::make_error_code(http::error::bad_method).category() ||
         error == http::error::end_of_stream || error == http::error::partial_message;
}

/// Of what was read, not of the transport.
HttpError unreadable(const beast::error_code& error) {
  if (error == http::error::body_limit) return {413, "too-large", "The body is too large."};
  if (error == http::error::header_limit || error == http::error::buffer_overflow) {
    return {431, "head-too-large", "The head of the request is too large."};
  }
  return {400, "malformed-request", "The request cannot be read."};
}

}  // namespace

Connection::Connection(Socket socket, EventLoop& loop,
                       const std::shared_ptr<ListenerState>& listener)
    : listener_(listener),
      loop_(loop),
      limits_(listener->options.limits),
      stream_(std::move(socket)),
      timer_(*loop.context),
      input_(limits_.headBytes + limits_.bodyBytes) {}

Connection::~Connection() {
  forgetInput();
  if (request_) wipe(request_->body);
  listener_->connections[loop_.index].erase(this);
}

void Connection::start() {
  listener_->connections[loop_.index].insert(this);
  ErrorCode error;
  stream_.socket().non_blocking(true, error);
  stream_.socket().set_option(asio::ip::tcp::no_delay(true), error);
  const auto client = stream_.socket().remote_endpoint(error);
  if (error) return;
  caller_ = client.address().to_string() + ":" + std::to_string(client.port());
  asio::co_spawn(
      loop_.context->get_executor(), [self = shared_from_this()] { return self->serve(); },
      asio::detached);
}

void Connection::shutDown() {
  if (!isWriting_) return close();
  timer_.expires_after(lastReplies);
  timer_.async_wait([self = shared_from_this()](const ErrorCode& error) {
    if (!error) self->close();
  });
}

void Connection::close() {
  timer_.cancel();
  stream_.close();
}

Connection::Task<void> Connection::serve() {
  // Each in a statement of its own: g++ 12 loses `this` where && joins them.
  bool goesOn = true;
  while (goesOn) {
    goesOn = co_await readRequest();
    if (goesOn) goesOn = co_await awaitReply();
    if (goesOn) goesOn = co_await sendReply();
    if (input_.size() == 0) continue;
    // Others of this loop go first.
    co_await asio::post(*loop_.context, asio::use_awaitable_t<LoopExecutor>());
  }
  close();
  finish(0);
}

// Requests.

/// Sets the request, or the reply that rejects it.
Connection::Task<bool> Connection::readRequest() {
  ErrorCode error;
  if (listener_->isClosing || !isOpen()) co_return false;
  if (input_.size() == 0) {
    stream_.expires_after(limits_.idleTime);
    input_.commit(co_await stream_.async_read_some(input_.prepare(firstRead), into(error)));
    if (error || !isOpen()) co_return false;
  }
  receivedAt_ = Clock::now();
  frame_ = {};
  replyBytes_ = 0;
  parser_.emplace();
  parser_->header_limit(limits_.headBytes);
  parser_->body_limit(limits_.bodyBytes);
  requestBytes_ = parser_->put(input_.data(), error);
  input_.consume(requestBytes_);
  if (error == http::error::need_more) {
    stream_.expires_after(limits_.headTime);
    requestBytes_ += co_await http::async_read_header(stream_, input_, *parser_, into(error));
  }
  if (!isOpen() || (error && isOfTransport(error))) co_return false;
  request_.emplace();
  request_->id = makeRequestID();
  request_->caller = caller_;
  request_->receivedAt = std::chrono::system_clock::now();
  describe(parser_->get(), *request_);
  try {
    if (error) throw unreadable(error);
    const auto& head = parser_->get();
    // Behind a body that is not read for its encoding, nobody knows where the next request begins.
    const bool hasKnownLength = head.count(http::field::transfer_encoding) == 0;
    frame_ = {head.version(), request_->isHead, parser_->keep_alive() && hasKnownLength};
    readHead(head, listener_->options, *request_);
    if (!parser_->is_done()) {
      const bool goesOn = co_await readBody();
      if (!goesOn) co_return false;
    }
    handleRequest();
  } catch (const HttpError& rejection) {
    frame_.keepsConnection = frame_.keepsConnection && parser_->is_done();
    forgetInput();
    reply_ = errorReply(rejection, request_->id);
  }
  co_return true;
}

/// Throws `HttpError` for one that cannot be read.
Connection::Task<bool> Connection::readBody() {
  ErrorCode error;
  parser_->eager(true);
  if (input_.size() == 0 && parser_->get().count(http::field::expect) > 0) {
    constexpr std::string_view leave = "HTTP/1.1 100 Continue\r\n\r\n";
    // It is the first thing that is written, or the client does not read.
    if (stream_.socket().write_some(asio::buffer(leave), error) != leave.size()) co_return false;
  }
  stream_.expires_after(limits_.bodyTime);
  requestBytes_ += co_await http::async_read(stream_, input_, *parser_, into(error));
  if (!isOpen() || (error && isOfTransport(error))) co_return false;
  if (error) throw unreadable(error);
  co_return true;
}

void Connection::forgetInput() {
  if (parser_) wipe(parser_->get().body());
  parser_.reset();
  if (input_.size() == 0) input_.clear();
  input_.shrink_to_fit();
}

void Connection::handleRequest() {
  request_->body = std::move(parser_->get().body());
  forgetInput();
  ++requestNumber_;
  isHandling_ = isAwaitingReply_ = true;
  const auto reply = replyTo(requestNumber_);
  try {
    listener_->handler.handle(*request_, reply);
  } catch (const HttpError& error) {
    reply(errorReply(error, request_->id));
  } catch (const std::exception&) {
    reply(errorReply({500, "service-failed", "The service failed."}, request_->id));
  }
  isHandling_ = false;
  wipe(request_->body);
  request_->body.shrink_to_fit();
}

// Replies.

/// Keeps nothing of the connection.
Reply Connection::replyTo(std::uint64_t number) {
  return [connection = weak_from_this(), number,
          context = std::weak_ptr(loop_.context)](HttpReply reply) {
    const auto loop = context.lock();
    if (!loop) return;
    if (loop->get_executor().running_in_this_thread()) {
      const auto self = connection.lock();
      if (self && self->isHandling_) return self->takeReply(number, std::move(reply));
    }
    asio::post(*loop, [connection, number, reply = std::move(reply)]() mutable {
      if (const auto self = connection.lock()) self->takeReply(number, std::move(reply));
    });
  };
}

void Connection::takeReply(std::uint64_t number, HttpReply reply) {
  if (!isAwaitingReply_ || number != requestNumber_) return;
  isAwaitingReply_ = false;
  reply_ = std::move(reply);
  if (!isHandling_) timer_.cancel();
}

/// Until it has come and its delay is over.
Connection::Task<bool> Connection::awaitReply() {
  const auto deadline = receivedAt_ + limits_.answerTime;
  while (isAwaitingReply_ && isOpen() && Clock::now() < deadline) co_await pauseUntil(deadline);
  isAwaitingReply_ = false;
  if (!reply_) co_return false;
  if (reply_->delay <= 0ms) co_return true;
  const auto at = Clock::now() + reply_->delay;
  co_await pauseUntil(std::min(at, deadline));
  co_return isOpen() && at < deadline;
}

Connection::Task<bool> Connection::sendReply() {
  using Then = OutgoingReply::Then;
  if (reply_->events || reply_->fault) frame_.keepsConnection = false;
  auto outgoing = outgoingReply(*reply_, request_->id, frame_);
  std::string_view rest = outgoing.bytes;
  while (true) {
    if (!co_await write(rest.substr(0, outgoing.piece))) co_return false;
    rest.remove_prefix(std::min(outgoing.piece, rest.size()));
    if (rest.empty()) break;
    co_await pauseUntil(Clock::now() + outgoing.pause);
    if (!isOpen()) co_return false;
  }
  outgoing.bytes = {};
  const auto then = outgoing.then;
  if (then == Then::hold) co_await pauseUntil(receivedAt_ + limits_.answerTime);
  if (then == Then::stream) co_await sendEvents();
  if (then == Then::reset) {
    ErrorCode error;
    stream_.socket().set_option(asio::socket_base::linger(true, 0), error);
    close();
  }
  finish(outgoing.status);
  if (then == Then::drain || then == Then::stream) co_await drain();
  co_return then == Then::next;
}

Connection::Task<bool> Connection::write(std::string_view bytes) {
  if (bytes.empty()) co_return true;
  ErrorCode error;
  const auto written = stream_.socket().write_some(asio::buffer(bytes), error);
  replyBytes_ += written;
  if (error && error != asio::error::would_block) co_return false;
  if (written == bytes.size()) co_return true;
  isWriting_ = true;
  stream_.expires_after(limits_.transferTime);
  const auto rest = asio::buffer(bytes.substr(written));
  replyBytes_ += co_await asio::async_write(stream_, rest, into(error));
  isWriting_ = false;
  co_return !error && isOpen();
}

Connection::Task<void> Connection::sendEvents() {
  for (int silence = 0;;) {
    co_await pauseUntil(Clock::now() + eventPause);
    if (!isOpen()) co_return;
    std::string events;
    try {
      events = reply_->events();
    } catch (const std::exception&) {
      co_return;
    }
    silence = events.empty() ? silence + 1 : 0;
    if (silence == mostSilence) {
      events = ":\n\n";
      silence = 0;
    }
    if (!co_await write(events)) co_return close();
  }
}

void Connection::finish(int status) {
  if (!request_) return;
  try {
    if (!reply_) reply_.emplace();
    listener_->handler.finished(
        {*request_, *reply_, status, Clock::now() - receivedAt_, requestBytes_, replyBytes_});
  } catch (const std::exception&) {
    // What is only a record costs nobody the connection.
  }
  request_.reset();
  reply_.reset();
}

/// Closing with unread bytes would reset the connection, and the client might lose the reply.
Connection::Task<void> Connection::drain() {
  ErrorCode error;
  if (!isOpen()) co_return;
  stream_.socket().shutdown(asio::socket_base::shutdown_send, error);
  isWriting_ = true;
  stream_.expires_after(listener_->isClosing ? lastReplies : farewell);
  while (!error && isOpen()) {
    input_.clear();
    co_await stream_.async_read_some(input_.prepare(firstRead), into(error));
  }
}

// What is awaited beside.

Connection::Task<void> Connection::pauseUntil(Clock::time_point until) {
  if (listener_->isClosing) close();
  if (!isOpen()) co_return;
  watch();
  timer_.expires_at(until);
  isPausing_ = true;
  ErrorCode error;
  co_await timer_.async_wait(into(error));
  isPausing_ = false;
}

/// Notices that the client leaves while nothing is read. What it sends meanwhile waits in `input_`.
void Connection::watch() {
  if (isWatched_ || input_.size() == input_.max_size()) return;
  isWatched_ = true;
  stream_.socket().async_wait(
      asio::socket_base::wait_read, [self = shared_from_this()](ErrorCode error) {
        self->isWatched_ = false;
        if (error || !self->isPausing_) return;
        auto& input = self->input_;
        const auto space = std::min(firstRead, input.max_size() - input.size());
        const auto bytes = self->stream_.socket().read_some(input.prepare(space), error);
        if (error && error != asio::error::would_block) return self->close();
        input.commit(bytes);
        self->watch();
      });
}

}  // namespace hlv::sandbox::server
