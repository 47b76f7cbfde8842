#include "Server/Http/HttpListener.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <utility>

#include "Server/Http/Connection.h"

namespace hlv::server {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using ErrorCode = boost::system::error_code;

/// Before another look at connections that could not be taken.
constexpr std::chrono::milliseconds acceptPause{20};

template <class Acceptor>
void bind(Acceptor& acceptor, const tcp::endpoint& endpoint, ErrorCode& error) {
  acceptor.open(endpoint.protocol(), error);
  if (!error) acceptor.set_option(asio::socket_base::reuse_address(true), error);
  if (!error) acceptor.bind(endpoint, error);
}

}  // namespace

/// Takes connections and spreads them over the loops.
///
/// Threading: its loop's thread, but for its public members.
class Acceptor : public std::enable_shared_from_this<Acceptor> {
 public:
  Acceptor(EventLoops& loops, EventLoop& loop, std::shared_ptr<ListenerState> listener)
      : listener_(std::move(listener)),
        loops_(loops),
        acceptor_(*loop.context),
        timer_(*loop.context) {}

  /// Returns the port.
  int listen(const tcp::endpoint& endpoint, ErrorCode& error) {
    bind(acceptor_, endpoint, error);
    if (!error) acceptor_.listen(asio::socket_base::max_listen_connections, error);
    return error ? 0 : acceptor_.local_endpoint(error).port();
  }

  void start() {
    asio::co_spawn(
        acceptor_.get_executor(), [self = shared_from_this()] { return self->accept(); },
        asio::detached);
  }

  void close() {
    asio::post(acceptor_.get_executor(), [self = shared_from_this()] {
      ErrorCode error;
      self->acceptor_.close(error);
      self->timer_.cancel();
    });
  }

 private:
  /// Until it is closed.
  asio::awaitable<void, LoopExecutor> accept() {
    while (acceptor_.is_open()) {
      auto& loop = loops_.all()[next_ % loops_.all().size()];
      ErrorCode error = asio::error::no_descriptors;
      if (hasRoom()) {
        auto socket = co_await acceptor_.async_accept(*loop.context, into(error));
        if (!error) take(std::move(socket), loop);
      }
      if (!error || !acceptor_.is_open()) continue;
      timer_.expires_after(acceptPause);
      co_await timer_.async_wait(into(error));
    }
  }

  bool hasRoom() const {
    // This and the listener hold it too.
    const auto connections = static_cast<std::size_t>(listener_.use_count()) - 2;
    return connections < listener_->options.limits.connections;
  }

  void take(Connection::Socket socket, EventLoop& loop) {
    ++next_;
    auto connection = std::make_shared<Connection>(std::move(socket), loop, listener_);
    // Nothing of it stays here: it may end on its own loop at once.
    asio::post(*loop.context, [connection = std::move(connection)] { connection->start(); });
  }

  const std::shared_ptr<ListenerState> listener_;
  EventLoops& loops_;
  std::size_t next_ = 0;
  asio::basic_socket_acceptor<tcp, LoopExecutor> acceptor_;
  LoopTimer timer_;
};

namespace {

std::string nameOf(const ListenOptions& options) {
  return "The address " + options.address + ", port " + std::to_string(options.port) + ",";
}

Result<tcp::endpoint> endpointOf(const ListenOptions& options) {
  using Read = Result<tcp::endpoint>;
  ErrorCode error;
  const auto address = asio::ip::make_address(options.address, error);
  if (error || options.port < 0 || options.port > 65'535) {
    return Read::failure(nameOf(options) + " is none.");
  }
  if (!address.is_loopback() && !options.beyondThisMachine) {
    return Read::failure(
        "The services listen on this machine alone, at 127.0.0.1, unless they are asked to listen "
        "beyond it.");
  }
  return tcp::endpoint(address, static_cast<std::uint16_t>(options.port));
}

std::string problemOfPort(const ListenOptions& options) {
  return nameOf(options) + " cannot be listened on.";
}

}  // namespace

Result<std::unique_ptr<HttpListener>> HttpListener::open(EventLoops& loops, ListenOptions options,
                                                         HttpHandler& handler) {
  using Opened = Result<std::unique_ptr<HttpListener>>;
  const auto endpoint = endpointOf(options);
  if (!endpoint) return Opened::failure(endpoint.problem());
  const auto problem = problemOfPort(options);
  auto listener =
      std::unique_ptr<HttpListener>(new HttpListener(loops, std::move(options), handler));
  const auto acceptor = std::make_shared<Acceptor>(loops, loops.next(), listener->state_);
  ErrorCode error;
  listener->port_ = acceptor->listen(*endpoint, error);
  if (error) return Opened::failure(problem);
  listener->acceptor_ = acceptor;
  acceptor->start();
  return listener;
}

Result<int> HttpListener::probe(const ListenOptions& options) {
  const auto endpoint = endpointOf(options);
  if (!endpoint) return Result<int>::failure(endpoint.problem());
  asio::io_context context;
  tcp::acceptor acceptor(context);
  ErrorCode error;
  bind(acceptor, *endpoint, error);
  if (error) return Result<int>::failure(problemOfPort(options));
  return int{acceptor.local_endpoint().port()};
}

HttpListener::HttpListener(EventLoops& loops, ListenOptions options, HttpHandler& handler)
    : loops_(loops),
      state_(std::make_shared<ListenerState>(std::move(options), handler, loops.all().size())) {}

HttpListener::~HttpListener() {
  auto ended = state_->ended.get_future();
  state_->isClosing = true;
  for (const auto& loop : loops_.all()) {
    asio::post(*loop.context, [state = state_, index = loop.index] {
      // Those that close leave the set.
      const auto connections = state->connections[index];
      for (auto* connection : connections) connection->shutDown();
    });
  }
  if (const auto acceptor = acceptor_.lock()) acceptor->close();
  state_.reset();
  ended.wait();
}

}  // namespace hlv::server
