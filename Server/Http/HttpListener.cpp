#include "Server/Http/HttpListener.h"

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/system/system_error.hpp>
#include <utility>

#include "Server/Http/Connection.h"
#include "Values/Problem.h"

namespace hlv::sandbox::server {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using Acceptor = decltype(ListenerState::acceptor);
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

/// Takes connections and spreads them over the loops, until the acceptor is closed.
asio::awaitable<void, LoopExecutor> accept(std::shared_ptr<ListenerState> listener,
                                           EventLoops& loops) {
  auto& acceptor = listener->acceptor;
  LoopTimer timer(acceptor.get_executor());
  for (std::size_t next = 0; acceptor.is_open();) {
    auto& loop = loops.all()[next % loops.all().size()];
    ErrorCode error = asio::error::no_descriptors;
    // This and the listener hold it too.
    const auto connections = static_cast<std::size_t>(listener.use_count()) - 2;
    if (connections < listener->options.limits.connections) {
      auto socket = co_await acceptor.async_accept(*loop.context, into(error));
      if (!error) {
        ++next;
        auto connection = std::make_shared<Connection>(std::move(socket), loop, listener);
        // Nothing of it stays here: it may end on its own loop at once.
        asio::post(*loop.context, [connection = std::move(connection)] { connection->start(); });
      }
    }
    if (!error || !acceptor.is_open()) continue;
    timer.expires_after(acceptPause);
    co_await timer.async_wait(into(error));
  }
}

}  // namespace

int HttpListener::probe(const ListenOptions& options) {
  asio::io_context context;
  Acceptor acceptor(context);
  return bind(acceptor, options, false);
}

HttpListener::HttpListener(EventLoops& loops, ListenOptions options, HttpHandler& handler)
    : loops_(loops),
      state_(std::make_shared<ListenerState>(std::move(options), handler, loops)),
      port_(bind(state_->acceptor, state_->options, true)) {
  asio::co_spawn(state_->acceptor.get_executor(), accept(state_, loops), asio::detached);
}

HttpListener::~HttpListener() {
  auto ended = state_->end.promise.get_future();
  state_->isClosing = true;
  for (const auto& loop : loops_.all()) {
    asio::post(*loop.context, [state = state_, index = loop.index] {
      // Those that close leave the set.
      const auto connections = state->connections[index];
      for (auto* connection : connections) connection->shutDown();
    });
  }
  asio::post(state_->acceptor.get_executor(), [state = state_] {
    ErrorCode error;
    state->acceptor.close(error);
  });
  state_.reset();
  ended.wait();
}

}  // namespace hlv::sandbox::server
