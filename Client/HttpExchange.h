// One request and its reply, on Boost.Beast. Private to this folder.
#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "Client/HttpClient.h"

namespace hlv::client {

/// Connections between two requests, by "HOST:PORT", the one that was used last at the end.
using KeptConnections = std::map<std::string, std::vector<boost::asio::ip::tcp::socket>>;

/// Ends with one error of `sandbox::transportErrorDomain` for whatever goes wrong on the way. A
/// request that may be repeated is sent again, once and on a new connection, when a kept connection
/// ended before anything of the reply came. What was sent is overwritten, since it may hold card
/// data.
///
/// `timeout` is for the whole exchange. Threading: the loop's thread.
void exchange(boost::asio::io_context& context, KeptConnections& kept, const ServiceURL& url,
              ClientRequest request, std::chrono::milliseconds timeout,
              HttpLoop::Completion completion);

}  // namespace hlv::client
