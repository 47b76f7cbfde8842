// One connection: its requests, one after the other, and their replies. Private to the listener.
#pragma once

#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/basic_stream.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Server/Http/EventLoop.h"
#include "Server/Http/HttpError.h"
#include "Server/Http/ListenerState.h"
#include "Server/Http/ReplyBytes.h"
#include "Server/Http/RequestHead.h"

namespace hlv::server {

/// Lives as long as something is awaited for it. Nothing large is kept between requests, and what
/// was received is overwritten once it was handed on.
///
/// Threading: its loop's thread, but for the constructor.
class Connection : public std::enable_shared_from_this<Connection> {
 public:
  using Socket = boost::asio::basic_stream_socket<boost::asio::ip::tcp, LoopExecutor>;

  Connection(Socket socket, EventLoop& loop, const std::shared_ptr<ListenerState>& listener);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  void start();
  /// Closes what is idle or held at once, and what is being written soon.
  void shutDown();
  /// The reply to the request of this number; ignored for another one.
  void takeReply(std::uint64_t number, HttpReply reply);

 private:
  using ErrorCode = boost::beast::error_code;
  using Clock = std::chrono::steady_clock;

  enum class State {
    /// Waits for a request, or for the rest of one.
    reading,
    /// Has a request, and waits for its reply or for the time to send it.
    held,
    writing,
    /// Has written its last byte, and lets the client finish.
    draining,
    closed
  };
  enum class Then { next, drain, reset, hold, stream };
  /// How a reply leaves: up to which byte, in which pieces, and what follows.
  struct Plan {
    std::size_t end = 0;
    std::size_t piece = SIZE_MAX;
    std::chrono::milliseconds pause{0};
    Then then = Then::next;
    /// 0 where no whole reply leaves.
    int status = 0;
  };
  class ReplyOnce;

  void readRequest();
  void onRead(ErrorCode error, std::size_t bytes);
  void parseHead();
  void onHead(ErrorCode error, std::size_t bytes);
  void readBody();
  void onBody(ErrorCode error, std::size_t bytes);
  void reject(const HttpError& error, bool keepsConnection);
  void rejectUnreadable(ErrorCode error);
  void forgetInput();

  void handleRequest();
  void hold();
  void useReply();
  void sendReply();
  Plan planned(std::size_t bytes) const;
  void sendPiece();
  void sentPiece();
  void sentAll();
  void askForEvents();
  void finish(int status);
  void drain();
  void reset();
  void close();

  void watch();
  void onReadable();
  void setTimer(Clock::time_point at, void (Connection::*then)());
  void stopTimer();
  template <class Method>
  auto bound(Method method);

  // Goes last, when nothing of the handler's is left.
  const ListenerState::Presence presence_;
  const std::shared_ptr<ListenerState> listener_;
  EventLoop& loop_;
  const HttpLimits& limits_;
  boost::beast::basic_stream<boost::asio::ip::tcp, LoopExecutor> stream_;
  LoopTimer timer_;
  std::uint64_t timerNumber_ = 0;
  bool isTimerSet_ = false;
  std::string caller_;
  State state_ = State::reading;

  boost::beast::basic_flat_buffer<WipingAllocator<char>> input_;
  std::optional<RequestParser> parser_;
  std::optional<HttpRequest> request_;
  std::uint64_t requestNumber_ = 0;
  std::size_t requestBytes_ = 0;
  Clock::time_point receivedAt_;
  ReplyFrame frame_;
  bool isHandling_ = false;
  bool isWatched_ = false;

  std::optional<HttpReply> reply_;
  std::string output_;
  std::size_t sent_ = 0;
  std::size_t replyBytes_ = 0;
  Plan plan_;
  int silence_ = 0;
};

}  // namespace hlv::server
