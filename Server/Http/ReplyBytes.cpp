#include "Server/Http/ReplyBytes.h"

#include <algorithm>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <random>
#include <string_view>

namespace hlv::sandbox::server {
namespace {

namespace beast = boost::beast;
namespace http = beast::http;

/// For browsers: nothing is kept, guessed, framed, or fetched from elsewhere.
constexpr std::pair<const char*, const char*> safetyHeaders[] = {
    {"Cache-Control", "no-store"},
    {"Content-Security-Policy",
     "default-src 'self'; img-src 'self' data:; frame-ancestors 'none'; base-uri 'none'"},
    {"Referrer-Policy", "no-referrer"},
    {"X-Content-Type-Options", "nosniff"},
};

bool isHeaderText(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x20 && byte != 0x7F;
  });
}

std::string serialized(const HttpReply& reply, const std::string& requestID,
                       const ReplyFrame& frame) {
  http::response<http::empty_body> message;
  message.version(frame.version);
  message.result(static_cast<unsigned>(reply.status));
  message.set("X-Request-Id", requestID);
  for (const auto& [name, value] : safetyHeaders) message.set(name, value);
  const bool hasBody = reply.status != 204 && reply.status != 304 && !reply.events;
  if (reply.events) {
    message.set(http::field::content_type, "text/event-stream");
  } else if (hasBody && !reply.body.empty()) {
    message.set(http::field::content_type, reply.contentType);
  }
  for (const auto& [name, value] : reply.headers) {
    if (isHeaderText(name) && isHeaderText(value)) message.set(name, value);
  }
  if (hasBody) message.content_length(reply.body.size());
  message.keep_alive(frame.keepsConnection);
  http::fields::writer head(message, message.version(), message.result_int());
  auto bytes = beast::buffers_to_string(head.get());
  if (hasBody && !frame.isHead) bytes += reply.body;
  return bytes;
}

}  // namespace

std::string makeRequestID() {
  constexpr int letters = 10;
  thread_local std::mt19937_64 generator{std::random_device{}()};
  std::string id = "req_";
  for (int half = 0; half < 2; ++half) {
    auto number = generator();
    for (int i = 0; i < letters; ++i, number /= 26) id += static_cast<char>('a' + number % 26);
  }
  return id;
}

OutgoingReply outgoingReply(const HttpReply& reply, const std::string& requestID,
                            const ReplyFrame& frame) {
  using Then = OutgoingReply::Then;
  OutgoingReply outgoing{.bytes = serialized(reply, requestID, frame), .status = reply.status};
  if (frame.keepsConnection) outgoing.then = Then::next;
  if (reply.events && !frame.isHead) outgoing.then = Then::stream;
  if (reply.fault) reply.fault(outgoing);
  return outgoing;
}

}  // namespace hlv::sandbox::server
