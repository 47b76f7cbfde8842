#include "Server/Http/HttpListener.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/system/system_error.hpp>
#include <utility>

#include "Server/Http/Connection.h"
#include "Values/Problem.h"

namespace hlv::server {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using ErrorCode = boost::system::error_code;

/// Before another look at connections that could not be taken.
constexpr std::chrono::milliseconds acceptPause{20};

std::string nameOf(const ListenOptions& options) {
  return "The address " + options.address + ", port " + std::to_string(options.port) + ",";
}

tcp::endpoint endpointOf(const ListenOptions& options) {
  ErrorCode error;
  const auto address = asio::ip::make_address(options.address, error);
  if (error || options.port < 0 || options.port > 65'535) {
    throw Problem(nameOf(options) + " is none.");
  }
  if (!address.is_loopback() && !options.beyondThisMachine) {
    throw Problem(
        "The services listen on this machine alone, at 127.0.0.1, unless they are asked to listen "
        "beyond it.");
  }
  return {address, static_cast<std::uint16_t>(options.port)};
}

/// Returns the port.
template <class Acceptor>
int bind(Acceptor& acceptor, const ListenOptions& options, bool listens) {
  const auto endpoint = endpointOf(options);
  try {
    acceptor.open(endpoint.protocol());
    acceptor.set_option(asio::socket_base::reuse_address(true));
    acceptor.bind(endpoint);
    if (listens) acceptor.listen();
    return acceptor.local_endpoint().port();
  } catch (const boost::system::system_error&) {
    throw Problem(nameOf(options) + " cannot be listened on.");
  }
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

  /// Returns the port. Throws `Problem`.
  int start() {
    const int port = bind(acceptor_, listener_->options, true);
    asio::co_spawn(
        acceptor_.get_executor(), [self = shared_from_this()] { return self->accept(); },
        asio::detached);
    return port;
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

int HttpListener::probe(const ListenOptions& options) {
  asio::io_context context;
  tcp::acceptor acceptor(context);
  return bind(acceptor, options, false);
}

HttpListener::HttpListener(EventLoops& loops, ListenOptions options, HttpHandler& handler)
    : loops_(loops),
      state_(std::make_shared<ListenerState>(std::move(options), handler, loops.all().size())) {
  const auto acceptor = std::make_shared<Acceptor>(loops, loops.next(), state_);
  port_ = acceptor->start();
  acceptor_ = acceptor;
}

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
