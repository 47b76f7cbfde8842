// One request and its reply, apart from how they travel.
//
// Threading: plain values.
#pragma once

#include <algorithm>
#include <any>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Values/NullableString.h"

namespace hlv::sandbox::server {

struct HttpRequest {
  /// "req_" and twenty letters: none looks like a card number. The reply's X-Request-Id.
  std::string id;
  /// HEAD arrives as GET.
  std::string method;
  bool isHead = false;
  /// The path between its slashes, decoded; a slash at its end adds nothing.
  std::vector<std::string> path;
  /// As received, for records; may hold whatever a client wrote.
  std::string target;
  /// Decoded; of equal names the first.
  std::map<std::string, std::string> query;
  NullableString apiKey;
  NullableString idempotencyKey;
  NullableString authorization;
  NullableString prefer;
  /// Under which name, and port if any, the listener was called.
  std::string host;
  /// "address:port" of the client.
  std::string caller;
  /// Overwritten when the handler returns.
  std::string body;
  std::chrono::system_clock::time_point receivedAt;

  NullableString queryValue(const std::string& name) const {
    const auto found = query.find(name);
    return found == query.end() ? std::nullopt : NullableString(found->second);
  }
};

/// A reply as it leaves, and what the connection does then.
struct OutgoingReply {
  enum class Then {
    /// Reads the next request.
    next,
    /// Closes, once the client has read everything.
    drain,
    reset,
    /// Sends nothing until the client leaves or the answer time has passed.
    hold,
    /// Sends the events.
    stream
  };
  std::string bytes;
  /// In pieces of so many bytes, with a pause after each but the last.
  std::size_t piece = SIZE_MAX;
  std::chrono::milliseconds pause{0};
  Then then = Then::drain;
  /// 0 where no whole reply leaves.
  int status = 0;

  void cut(std::size_t end, Then after) {
    if (end < bytes.size()) status = 0;
    bytes.resize(std::min(end, bytes.size()));
    then = after;
  }
};

/// Changes a reply on its way; the connection does not go on after it.
using TransportFault = std::function<void(OutgoingReply&)>;

/// Asked for what is new, on the connection's loop every 50 ms; empty is nothing. An exception ends
/// the stream.
using EventStream = std::function<std::string()>;

struct HttpReply {
  int status = 200;
  /// Not sent for 204 and 304, nor with `events`.
  std::string body = {};
  /// Not sent without a body.
  std::string contentType = "application/json";
  std::vector<std::pair<std::string, std::string>> headers = {};
  /// Error code in the body, for records; empty for none.
  std::string code = {};
  std::chrono::milliseconds delay{0};
  /// Empty for none.
  TransportFault fault = {};
  /// Server-sent events, until the client leaves, the stream throws, or the listener closes.
  EventStream events = {};
  /// Whatever the handler wants back in `finished`.
  std::any context = {};
};

/// Takes the reply: on any thread, once, at any time, even after the listener and the loops have
/// gone. Later calls are ignored, as are those for clients that have left. Where it is not called
/// the request is held until the answer time has passed.
using Reply = std::function<void(HttpReply)>;

struct FinishedRequest {
  /// Without its body. Of a request that could not be read, only what could.
  const HttpRequest& request;
  /// As the handler made it; an empty one where it made none.
  const HttpReply& reply;
  /// 0: no whole reply left.
  int status;
  /// From the first byte of the request to the last of the reply.
  std::chrono::nanoseconds duration;
  std::size_t requestBytes;
  std::size_t replyBytes;
};

/// Threading: called on all loops at once; must not block.
class HttpHandler {
 public:
  virtual ~HttpHandler() = default;
  /// May throw `HttpError`; another exception is a reply 500. `request` is valid during the call.
  virtual void handle(const HttpRequest& request, Reply reply) = 0;
  /// Every request once, after its reply left or its client did; also those that were rejected
  /// before `handle`, but for heads that did not arrive whole.
  virtual void finished(const FinishedRequest& request) = 0;
};

}  // namespace hlv::sandbox::server
