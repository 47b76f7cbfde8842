#include "Services/Http/DirectAnswer.h"

#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "Services/Http/AnswerHead.h"

namespace hlv::services {
namespace {

/// How many times in a row a stream may have nothing new before a line that says nothing tells both
/// sides that the other is there.
constexpr int mostSilence = 100;

std::string bytesOf(const HttpAnswer& answer) {
  const auto body = answer.body.is_null() ? "" : textOf(answer.body);
  return "HTTP/1.1 " + std::to_string(answer.status) + " Befallen\r\n" + requestIDHeader + ": " +
         makeRequestID() +
         "\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
         "\r\n\r\n" + body;
}

void befall(Connection& connection, const HttpAnswer& answer) {
  const auto bytes = bytesOf(answer);
  switch (answer.mishap) {
    case Mishap::refused:
      return connection.endRudely();
    case Mishap::reset:
      // An eighth is missing, so that even an answer without a body is not whole.
      connection.send(std::string_view(bytes).substr(0, bytes.size() - bytes.size() / 8));
      return connection.endRudely();
    case Mishap::garbage:
      connection.send("This is no answer of a service.\r\n\r\n");
      return connection.endPolitely();
    case Mishap::twice:
      connection.send(bytes + bytes);
      return connection.endPolitely();
    case Mishap::none:
      return;
  }
}

/// Nothing when the stream broke; whoever listens comes again.
std::optional<std::string> nextOf(const EventStream& events) {
  try {
    return events();
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

void stream(Connection& connection, const EventStream& events, const std::function<bool()>& pause) {
  std::string head = "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nConnection: close\r\n";
  for (const auto& [name, value] : safetyHeaders) {
    head.append(name).append(": ").append(value).append("\r\n");
  }
  if (!connection.send(head + "\r\n")) return;
  for (int silence = 0; !connection.hasEnded() && !pause();) {
    auto piece = nextOf(events);
    if (!piece) return;
    silence = piece->empty() ? silence + 1 : 0;
    if (silence == mostSilence) {
      *piece = ":\n\n";
      silence = 0;
    }
    if (!connection.send(*piece)) return;
  }
}

}  // namespace

void answerDirectly(Connection& connection, const HttpAnswer& answer,
                    const std::function<bool()>& pause) {
  if (answer.mishap != Mishap::none) return befall(connection, answer);
  if (answer.events) stream(connection, answer.events, pause);
}

}  // namespace hlv::services
