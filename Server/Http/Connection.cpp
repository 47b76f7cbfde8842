#include "Server/Http/Connection.h"

#include <algorithm>
#include <boost/asio/write.hpp>
#include <boost/beast/core/bind_handler.hpp>
#include <boost/beast/http/read.hpp>
#include <utility>

#include "Values/Wiped.h"

namespace hlv::server {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using namespace std::chrono_literals;

constexpr std::size_t firstRead = 2048;
constexpr auto farewell = 1'000ms;
constexpr auto lastReplies = 500ms;
constexpr std::size_t slowPiecesPerSecond = 20;
constexpr auto eventPause = 50ms;
/// How many times in a row a stream may have nothing new before an empty line shows both
/// sides that the other is there.
constexpr int mostSilence = 100;

bool isOfTransport(const beast::error_code& error) {
  return error.category() != http::make_error_code(http::error::bad_method).category() ||
         error == http::error::end_of_stream || error == http::error::partial_message;
}

}  // namespace

/// The way back to a request, which keeps nothing of its connection.
///
/// Threading: any.
class Connection::ReplyOnce {
 public:
  ReplyOnce(std::weak_ptr<Connection> connection, std::uint64_t number,
            std::shared_ptr<LoopEntry> loop)
      : connection_(std::move(connection)), number_(number), loop_(std::move(loop)) {}

  void take(HttpReply reply) {
    if (isUsed_.exchange(true)) return;
    if (loop_->isThisThread()) {
      const auto connection = connection_.lock();
      if (connection && connection->isHandling_) {
        return connection->takeReply(number_, std::move(reply));
      }
    }
    loop_->post([connection = connection_, number = number_, reply = std::move(reply)]() mutable {
      if (const auto self = connection.lock()) self->takeReply(number, std::move(reply));
    });
  }

 private:
  const std::weak_ptr<Connection> connection_;
  const std::uint64_t number_;
  const std::shared_ptr<LoopEntry> loop_;
  std::atomic<bool> isUsed_{false};
};

Connection::Connection(Socket socket, EventLoop& loop,
                       const std::shared_ptr<ListenerState>& listener)
    : presence_(listener),
      listener_(listener),
      loop_(loop),
      limits_(listener->options.limits),
      stream_(std::move(socket)),
      timer_(loop.context()),
      input_(limits_.headBytes + limits_.bodyBytes) {}

Connection::~Connection() {
  forgetInput();
  if (request_) wipe(request_->body);
  listener_->connections[loop_.index()].erase(this);
}

template <class Method>
auto Connection::bound(Method method) {
  return beast::bind_front_handler(method, shared_from_this());
}

void Connection::start() {
  listener_->connections[loop_.index()].insert(this);
  ErrorCode error;
  stream_.socket().non_blocking(true, error);
  stream_.socket().set_option(asio::ip::tcp::no_delay(true), error);
  const auto client = stream_.socket().remote_endpoint(error);
  if (error) return close();
  caller_ = client.address().to_string() + ":" + std::to_string(client.port());
  readRequest();
}

void Connection::shutDown() {
  if (state_ == State::closed) return;
  if (state_ == State::reading || state_ == State::held) return close();
  setTimer(Clock::now() + lastReplies, &Connection::close);
}

// Requests.

void Connection::readRequest() {
  state_ = State::reading;
  if (listener_->isClosing) return close();
  if (input_.size() > 0) return parseHead();
  stream_.expires_after(limits_.idleTime);
  stream_.async_read_some(input_.prepare(firstRead), bound(&Connection::onRead));
}

void Connection::onRead(ErrorCode error, std::size_t bytes) {
  if (error || state_ != State::reading) return close();
  input_.commit(bytes);
  parseHead();
}

void Connection::parseHead() {
  if (state_ != State::reading) return;
  receivedAt_ = Clock::now();
  frame_ = {};
  replyBytes_ = 0;
  parser_.emplace();
  parser_->header_limit(limits_.headBytes);
  parser_->body_limit(limits_.bodyBytes);
  ErrorCode error;
  const auto used = parser_->put(input_.data(), error);
  input_.consume(used);
  requestBytes_ = used;
  if (error != http::error::need_more) return onHead(error, 0);
  stream_.expires_after(limits_.headTime);
  http::async_read_header(stream_, input_, *parser_, bound(&Connection::onHead));
}

void Connection::onHead(ErrorCode error, std::size_t bytes) {
  if (state_ != State::reading || (error && isOfTransport(error))) return close();
  requestBytes_ += bytes;
  request_.emplace();
  request_->id = makeRequestID();
  request_->caller = caller_;
  request_->receivedAt = std::chrono::system_clock::now();
  describe(parser_->get(), *request_);
  if (error) return rejectUnreadable(error);
  frame_ = {parser_->get().version(), request_->isHead, parser_->keep_alive()};
  try {
    readHead(parser_->get(), listener_->options, *request_);
  } catch (const HttpError& rejection) {
    return reject(rejection, frame_.keepsConnection && parser_->is_done());
  }
  readBody();
}

void Connection::readBody() {
  if (parser_->is_done()) return handleRequest();
  parser_->eager(true);
  if (input_.size() == 0 && parser_->get().count(http::field::expect) > 0) {
    const auto leave = serializedContinue();
    ErrorCode error;
    // It is the first thing that is written, or the client does not read.
    if (stream_.socket().write_some(asio::buffer(leave), error) != leave.size()) return close();
  }
  stream_.expires_after(limits_.bodyTime);
  http::async_read(stream_, input_, *parser_, bound(&Connection::onBody));
}

void Connection::onBody(ErrorCode error, std::size_t bytes) {
  requestBytes_ += bytes;
  if (state_ != State::reading || (error && isOfTransport(error))) return close();
  if (error) return rejectUnreadable(error);
  handleRequest();
}

void Connection::rejectUnreadable(ErrorCode error) {
  if (error == http::error::body_limit) {
    return reject({413, "too-large", "The body is too large."}, false);
  }
  if (error == http::error::header_limit || error == http::error::buffer_overflow) {
    return reject({431, "head-too-large", "The head of the request is too large."}, false);
  }
  reject({400, "malformed-request", "The request cannot be read."}, false);
}

void Connection::reject(const HttpError& error, bool keepsConnection) {
  forgetInput();
  frame_.keepsConnection = keepsConnection;
  reply_ = errorReply(error, request_->id);
  sendReply();
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
  state_ = State::held;
  reply_.reset();
  const auto once = std::make_shared<ReplyOnce>(weak_from_this(), ++requestNumber_, loop_.entry());
  isHandling_ = true;
  try {
    listener_->handler.handle(*request_, [once](HttpReply reply) { once->take(std::move(reply)); });
  } catch (const HttpError& error) {
    once->take(errorReply(error, request_->id));
  } catch (const std::exception&) {
    once->take(errorReply({500, "service-failed", "The service failed."}, request_->id));
  }
  isHandling_ = false;
  wipe(request_->body);
  request_->body.shrink_to_fit();
  if (reply_) return useReply();
  hold();
}

/// Until the reply comes or the client leaves.
void Connection::hold() {
  state_ = State::held;
  watch();
  setTimer(receivedAt_ + limits_.answerTime, &Connection::close);
}

// Replies.

void Connection::takeReply(std::uint64_t number, HttpReply reply) {
  if (state_ != State::held || number != requestNumber_ || reply_) return;
  reply_ = std::move(reply);
  if (!isHandling_) useReply();
}

void Connection::useReply() {
  if (reply_->delay <= 0ms) return sendReply();
  hold();
  const auto at = Clock::now() + reply_->delay;
  if (at < receivedAt_ + limits_.answerTime) setTimer(at, &Connection::sendReply);
}

void Connection::sendReply() {
  stopTimer();
  if (reply_->events || reply_->fault.kind != TransportFault::Kind::none) {
    frame_.keepsConnection = false;
  }
  sent_ = 0;
  output_ = serialized(*reply_, request_->id, frame_);
  if (reply_->fault.kind == TransportFault::Kind::garbage) {
    output_ = "This is no reply of a service.\r\n\r\n";
  } else if (reply_->fault.kind == TransportFault::Kind::twice) {
    output_ += output_;
  }
  plan_ = planned(output_.size());
  sendPiece();
}

Connection::Plan Connection::planned(std::size_t bytes) const {
  using Kind = TransportFault::Kind;
  Plan plan;
  plan.end = bytes;
  plan.status = reply_->status;
  plan.then = frame_.keepsConnection ? Then::next : Then::drain;
  if (reply_->events && !frame_.isHead) plan.then = Then::stream;
  const auto part = [&](std::size_t end, Then then) {
    plan.end = std::min(end, bytes);
    plan.then = then;
    if (plan.end < bytes) plan.status = 0;
  };
  const auto& fault = reply_->fault;
  switch (fault.kind) {
    case Kind::none:
      break;
    case Kind::refused:
      part(0, Then::reset);
      break;
    case Kind::never:
      part(0, Then::hold);
      break;
    case Kind::reset:
      part(bytes / 2, Then::reset);
      break;
    case Kind::stalled:
      part(bytes / 2, Then::hold);
      break;
    case Kind::cut:
      part(fault.bytes, Then::reset);
      break;
    case Kind::garbage:
      plan.status = 0;
      [[fallthrough]];
    case Kind::twice:
      plan.then = Then::drain;
      break;
    case Kind::slow: {
      const auto rate = std::clamp<std::size_t>(fault.bytesPerSecond, 1, 1'000'000'000);
      plan.then = Then::drain;
      plan.piece = std::max<std::size_t>(rate / slowPiecesPerSecond, 1);
      plan.pause = std::chrono::milliseconds(1'000 * plan.piece / rate);
      break;
    }
  }
  return plan;
}

void Connection::sendPiece() {
  state_ = State::writing;
  const auto piece = std::min(plan_.piece, plan_.end - sent_);
  std::size_t written = 0;
  if (piece > 0) {
    ErrorCode error;
    written = stream_.socket().write_some(asio::buffer(output_.data() + sent_, piece), error);
    if (error && error != asio::error::would_block) return close();
  }
  sent_ += written;
  replyBytes_ += written;
  if (written == piece) return sentPiece();
  const auto rest = asio::buffer(output_.data() + sent_, piece - written);
  stream_.expires_after(limits_.transferTime);
  asio::async_write(stream_, rest,
                    [self = shared_from_this()](const ErrorCode& error, std::size_t bytes) {
                      self->sent_ += bytes;
                      self->replyBytes_ += bytes;
                      if (error || self->state_ != State::writing) return self->close();
                      self->sentPiece();
                    });
}

void Connection::sentPiece() {
  if (sent_ == plan_.end) return sentAll();
  state_ = State::held;
  watch();
  setTimer(Clock::now() + plan_.pause, &Connection::sendPiece);
}

void Connection::sentAll() {
  output_ = {};
  switch (plan_.then) {
    case Then::next:
      finish(plan_.status);
      if (input_.size() == 0) return readRequest();
      // Others of this loop go first.
      state_ = State::reading;
      return asio::post(loop_.context(), bound(&Connection::readRequest));
    case Then::drain:
      finish(plan_.status);
      return drain();
    case Then::reset:
      return reset();
    case Then::hold:
      return hold();
    case Then::stream:
      state_ = State::held;
      watch();
      return setTimer(Clock::now() + eventPause, &Connection::askForEvents);
  }
}

void Connection::askForEvents() {
  try {
    output_ = reply_->events();
  } catch (const std::exception&) {
    finish(plan_.status);
    return drain();
  }
  silence_ = output_.empty() ? silence_ + 1 : 0;
  if (silence_ == mostSilence) {
    output_ = ":\n\n";
    silence_ = 0;
  }
  sent_ = 0;
  plan_.end = output_.size();
  sendPiece();
}

void Connection::finish(int status) {
  if (!request_) return;
  try {
    if (!reply_) reply_.emplace();
    listener_->handler.finished({*request_, status, Clock::now() - receivedAt_, requestBytes_,
                                 replyBytes_, reply_->code, reply_->context});
  } catch (const std::exception&) {
    // What is only a record costs nobody the connection.
  }
  request_.reset();
  reply_.reset();
}

// The end.

/// Closing with unread bytes would reset the connection, and the client might lose the reply.
void Connection::drain() {
  if (state_ != State::draining) {
    state_ = State::draining;
    ErrorCode error;
    stream_.socket().shutdown(asio::socket_base::shutdown_send, error);
    if (error) return close();
    input_.clear();
    stream_.expires_after(farewell);
    if (listener_->isClosing) setTimer(Clock::now() + lastReplies, &Connection::close);
  }
  stream_.async_read_some(input_.prepare(firstRead),
                          [self = shared_from_this()](const ErrorCode& error, std::size_t) {
                            if (error || self->state_ != State::draining) return self->close();
                            self->drain();
                          });
}

void Connection::reset() {
  ErrorCode error;
  stream_.socket().set_option(asio::socket_base::linger(true, 0), error);
  close();
}

void Connection::close() {
  if (state_ == State::closed) return;
  state_ = State::closed;
  stopTimer();
  stream_.close();
  finish(plan_.then == Then::reset || plan_.then == Then::stream ? plan_.status : 0);
}

// What is awaited beside.

/// Notices that the client leaves while nothing is read. What it sends meanwhile waits in `input_`.
void Connection::watch() {
  if (isWatched_ || input_.size() == input_.max_size()) return;
  isWatched_ = true;
  stream_.socket().async_wait(asio::socket_base::wait_read,
                              [self = shared_from_this()](const ErrorCode& error) {
                                self->isWatched_ = false;
                                if (!error && self->state_ == State::held) self->onReadable();
                              });
}

void Connection::onReadable() {
  ErrorCode error;
  const auto space = std::min(firstRead, input_.max_size() - input_.size());
  const auto bytes = stream_.socket().read_some(input_.prepare(space), error);
  if (error && error != asio::error::would_block) return close();
  input_.commit(bytes);
  watch();
}

void Connection::setTimer(Clock::time_point at, void (Connection::*then)()) {
  stopTimer();
  isTimerSet_ = true;
  timer_.expires_at(at);
  timer_.async_wait(
      [self = shared_from_this(), then, number = timerNumber_](const ErrorCode& error) {
        if (error || number != self->timerNumber_) return;
        self->isTimerSet_ = false;
        (self.get()->*then)();
      });
}

void Connection::stopTimer() {
  ++timerNumber_;
  if (std::exchange(isTimerSet_, false)) timer_.cancel();
}

}  // namespace hlv::server
