// One connection: its requests, one after the other, and their replies. Private to the listener.
#pragma once

#include <atomic>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/basic_socket_acceptor.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/beast/core/basic_stream.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Server/Http/EventLoops.h"
#include "Server/Http/HttpError.h"
#include "Server/Http/HttpMessages.h"
#include "Server/Http/ListenOptions.h"
#include "Server/Http/ReplyBytes.h"
#include "Server/Http/RequestHead.h"

namespace hlv::sandbox::server {

class Connection;

/// What the connections of a listener share. While one of them holds it, the listener waits with
/// its end.
///
/// Threading: any, but for `connections` and `acceptor`.
struct ListenerState {
  ListenerState(ListenOptions listenOptions, HttpHandler& requestHandler, EventLoops& loops)
      : options(std::move(listenOptions)),
        handler(requestHandler),
        connections(loops.all().size()),
        acceptor(*loops.next().context) {}

  /// Set when everything else has gone.
  struct End {
    ~End() { promise.set_value(); }
    std::promise<void> promise;
  } end;
  const ListenOptions options;
  HttpHandler& handler;
  std::atomic<bool> isClosing{false};
  /// By loop; each set is its loop's alone.
  std::vector<std::unordered_set<Connection*>> connections;
  /// Of its loop's thread alone, once it listens.
  boost::asio::basic_socket_acceptor<boost::asio::ip::tcp, LoopExecutor> acceptor;
};

/// Serves in one coroutine. Whatever ends the connection from outside closes it, and then the
/// coroutine returns. Nothing large is kept between requests, and what was received is overwritten
/// once it was handed on.
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

 private:
  template <class T>
  using Task = boost::asio::awaitable<T, LoopExecutor>;
  using ErrorCode = boost::beast::error_code;
  using Clock = std::chrono::steady_clock;

  Task<void> serve();
  /// Each says whether the connection goes on.
  Task<bool> readRequest();
  Task<bool> readBody();
  Task<bool> awaitReply();
  Task<bool> sendReply();
  Task<bool> write(std::string_view bytes);
  Task<void> sendEvents();
  Task<void> drain();
  /// Until then, until `timer_` is cancelled, or until the client leaves, which closes.
  Task<void> pauseUntil(Clock::time_point until);

  void handleRequest();
  Reply replyTo(std::uint64_t number);
  void takeReply(std::uint64_t number, HttpReply reply);
  void finish(int status);
  void forgetInput();
  void watch();
  bool isOpen() const { return stream_.socket().is_open(); }
  void close();

  // Goes last, when nothing of the handler's is left.
  const std::shared_ptr<ListenerState> listener_;
  EventLoop& loop_;
  const HttpLimits& limits_;
  boost::beast::basic_stream<boost::asio::ip::tcp, LoopExecutor> stream_;
  LoopTimer timer_;
  std::string caller_;

  boost::beast::basic_flat_buffer<WipingAllocator<char>> input_;
  std::optional<RequestParser> parser_;
  std::optional<HttpRequest> request_;
  std::uint64_t requestNumber_ = 0;
  std::size_t requestBytes_ = 0;
  Clock::time_point receivedAt_;
  ReplyFrame frame_;
  bool isHandling_ = false;
  bool isAwaitingReply_ = false;
  bool isPausing_ = false;
  bool isWatched_ = false;
  bool isWriting_ = false;

  std::optional<HttpReply> reply_;
  std::size_t replyBytes_ = 0;
};

}  // namespace hlv::sandbox::server
