#include "Server/Http/ReplyBytes.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/beast/core/buffers_range.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/serializer.hpp>
#include <boost/beast/http/span_body.hpp>
#include <random>
#include <string_view>

namespace hlv::server {
namespace {

namespace beast = boost::beast;
namespace http = beast::http;
using Body = http::span_body<const char>;

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

template <class Message>
std::string bytesOf(Message& message, bool headAlone) {
  std::string bytes;
  typename http::serializer<false, typename Message::body_type> serializer(message);
  serializer.split(headAlone);
  while (!serializer.is_done() && !(headAlone && serializer.is_header_done())) {
    beast::error_code error;
    serializer.next(error, [&](beast::error_code& /*error*/, const auto& buffers) {
      for (const auto buffer : beast::buffers_range_ref(buffers)) {
        bytes.append(static_cast<const char*>(buffer.data()), buffer.size());
      }
      serializer.consume(beast::buffer_bytes(buffers));
    });
    if (error) break;
  }
  return bytes;
}

std::string serialized(const HttpReply& reply, const std::string& requestID,
                       const ReplyFrame& frame) {
  http::response<Body> message;
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
  if (hasBody) {
    message.body() = {reply.body.data(), reply.body.size()};
    message.content_length(reply.body.size());
  }
  message.keep_alive(frame.keepsConnection);
  return bytesOf(message, frame.isHead || !hasBody);
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

std::string serializedContinue() {
  http::response<http::empty_body> message(http::status::continue_, 11);
  return bytesOf(message, true);
}

}  // namespace hlv::server
