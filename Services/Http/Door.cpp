#include "Services/Http/Door.h"

#include <httplib.h>
#include <pthread.h>
#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

#include "Services/Http/AnswerHead.h"
#include "Services/Http/Connection.h"
#include "Services/Http/DirectAnswer.h"
#include "Services/Http/ErrorBody.h"
#include "Services/Http/Percent.h"
#include "Services/Wiped.h"

namespace hlv::services {
namespace {

constexpr std::size_t longestTarget = 1024;
constexpr std::size_t workers = 16;
/// Between two looks at what is new in a stream.
constexpr std::chrono::milliseconds streamPause{50};

/// One request on its connection. The library hands its handlers no object of ours, so each of its
/// threads knows whose request it serves.
struct Visit {
  /// An answer that the library does not write, or none at all.
  std::optional<HttpAnswer> answer;
  bool isTakenOver = false;

  void takeOver(std::optional<HttpAnswer> taken) {
    answer = std::move(taken);
    isTakenOver = true;
  }
};
thread_local Visit* visit = nullptr;

/// Keeps the library from writing an answer.
struct TakenOver {};

void write(httplib::Response& response, HttpAnswer answer) {
  if (!response.has_header(requestIDHeader)) {
    response.set_header(requestIDHeader, makeRequestID());
    for (const auto& [name, value] : safetyHeaders) response.set_header(name, value);
  }
  response.status = answer.status;
  if (!answer.contentType.empty()) response.set_content(answer.content, answer.contentType);
  if (answer.body.is_null()) return;
  if (const auto error = answer.body.find("error"); error != answer.body.end()) {
    (*error)["request_id"] = response.get_header_value(requestIDHeader);
  }
  response.set_content(textOf(answer.body), "application/json");
}

NullableString headerOf(const httplib::Request& request, const char* name) {
  return request.has_header(name) ? NullableString(request.get_header_value(name)) : std::nullopt;
}

bool isNumber(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

bool isJson(const std::string& contentType) {
  constexpr std::string_view json = "application/json";
  std::string name = contentType.substr(0, contentType.find_first_of("; "));
  std::transform(name.begin(), name.end(), name.begin(), [](char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
  });
  return name == json;
}

/// Looks at the head of a request, before its body is read.
void checkHead(const httplib::Request& request) {
  if (request.target.size() > longestTarget) {
    throw Refused{414, "path-too-long", "The path is too long."};
  }
  if (request.has_header("Transfer-Encoding")) {
    throw Refused{411, "length-required", "A request says how long its body is."};
  }
  const auto bodyLength = request.get_header_value("Content-Length");
  if (request.get_header_value_count("Content-Length") != 1 || !isNumber(bodyLength)) {
    throw Refused{400, "malformed-request", "The length of the body cannot be read."};
  }
  const bool needsBody = request.method == "POST" || request.method == "PATCH";
  const bool hasBody = bodyLength != "0";
  if ((needsBody || hasBody) && (request.has_header("Content-Encoding") ||
                                 !isJson(request.get_header_value("Content-Type")))) {
    throw Refused{415, "unsupported-media-type", "A body is application/json, and not encoded."};
  }
}

/// What the library would make of a request's head on its way here.
void prepareHead(httplib::Request& request) {
  // Answers are sent whole and as they are.
  request.ranges.clear();
  request.headers.erase("Range");
  request.headers.erase("Accept-Encoding");
  // A request that tells no length has no body; the library would wait for one.
  if (!request.has_header("Content-Length")) request.set_header("Content-Length", "0");
}

/// Takes what stands before `separator` out of `text`, the separator included.
std::string_view takePart(std::string_view& text, char separator) {
  const auto part = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(text.size(), part.size() + 1));
  return part;
}

std::string decoded(std::string_view text) {
  auto result = percentDecoded(text);
  if (!result) throw Refused{400, "malformed-request", "The path cannot be read."};
  return *std::move(result);
}

HttpRequest takenOver(const httplib::Request& received) {
  HttpRequest request;
  request.method = received.method == "HEAD" ? "GET" : received.method;
  std::string_view query = received.target;
  auto path = takePart(query, '?');
  takePart(path, '/');
  while (!path.empty()) request.path.push_back(decoded(takePart(path, '/')));
  while (!query.empty()) {
    auto value = takePart(query, '&');
    const auto name = takePart(value, '=');
    request.query.emplace(decoded(name), decoded(value));
  }
  request.apiKey = headerOf(received, "X-API-Key");
  request.idempotencyKey = headerOf(received, "Idempotency-Key");
  request.host = received.get_header_value("Host");
  request.body = received.body;
  return request;
}

}  // namespace

class Door::Listener final : public httplib::Server {
 public:
  Listener(const ServiceLimits& limits, Door::Handler handler)
      : limits_(limits), handler_(std::move(handler)), waiting_(std::make_shared<Waiting>()) {
    new_task_queue = [] { return new httplib::ThreadPool(workers); };
    set_payload_max_length(limits.bodyBytes);
    set_address_family(AF_INET);
    // Without the library's own option, under which two programs may take the same port.
    set_socket_options([](socket_t descriptor) {
      const int yes = 1;
      ::setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    });
    const auto serve = [this](const httplib::Request& request, httplib::Response& response) {
      answer(request, response);
    };
    Get(".*", serve).Post(".*", serve).Put(".*", serve).Patch(".*", serve).Delete(".*", serve);
    set_pre_routing_handler([](const httplib::Request& request, httplib::Response& response) {
      try {
        checkHead(request);
        return HandlerResponse::Unhandled;
      } catch (const Refused& refused) {
        write(response, errorAnswer(refused));
        return HandlerResponse::Handled;
      }
    });
    set_error_handler(LibraryHandler([](const httplib::Request&, httplib::Response& response) {
      if (!response.body.empty() || visit->isTakenOver) return;
      // What fails without a word is the library, over a request that it cannot read.
      write(response, errorAnswer(response.status >= 500 ? 400 : response.status));
    }));
    set_post_routing_handler([](const httplib::Request&, httplib::Response&) {
      if (visit->isTakenOver) throw TakenOver();
    });
  }

  ~Listener() override { close(); }

  /// Answers whether the port can be listened on.
  bool open(const std::string& threadName, const std::string& address, int port) {
    port_ = port == 0 ? bind_to_any_port(address) : (bind_to_port(address, port) ? port : -1);
    if (port_ <= 0) return false;
    thread_ = std::thread([this, threadName] {
      ::pthread_setname_np(::pthread_self(), threadName.c_str());
      listen_after_bind();
      hasListened_ = true;
    });
    // What is stopped before it runs would run for ever.
    while (!is_running() && !hasListened_) std::this_thread::yield();
    return true;
  }

  int port() const { return port_; }

 private:
  using LibraryHandler = httplib::Server::Handler;

  /// Where answers are waited for.
  struct Waiting {
    std::mutex mutex;
    std::condition_variable changed;
    bool hasEnded = false;
  };

  void close() {
    {
      const std::lock_guard lock(waiting_->mutex);
      waiting_->hasEnded = true;
    }
    waiting_->changed.notify_all();
    if (!thread_.joinable()) return;
    stop();
    thread_.join();
  }

  void answer(const httplib::Request& received, httplib::Response& response) {
    // The library keeps the request until it is answered, and would free it as it is.
    const Wiped body(const_cast<std::string&>(received.body));
    auto answer = answerTo(received);
    if (answer && received.method == "HEAD") answer->events = nullptr;
    if (!answer || answer->events || answer->mishap != Mishap::none) {
      visit->takeOver(std::move(answer));
    } else {
      write(response, std::move(*answer));
    }
  }

  std::optional<HttpAnswer> answerTo(const httplib::Request& received) {
    const auto given = std::make_shared<std::optional<HttpAnswer>>();
    try {
      auto request = takenOver(received);
      const Wiped body(request.body);
      handler_(request, [waiting = waiting_, given](HttpAnswer answer) {
        {
          const std::lock_guard lock(waiting->mutex);
          if (!*given) *given = std::move(answer);
        }
        waiting->changed.notify_all();
      });
    } catch (const Refused& refused) {
      return errorAnswer(refused);
    } catch (const std::exception&) {
      return errorAnswer(500);
    }
    std::unique_lock lock(waiting_->mutex);
    waiting_->changed.wait_for(lock, limits_.answerTime,
                               [&] { return given->has_value() || waiting_->hasEnded; });
    return *given;
  }

  /// The library would wait for each piece of a request anew, and keep a connection for the next.
  bool process_and_close_socket(socket_t descriptor) override {
    Connection connection(descriptor, limits_);
    Visit current;
    visit = &current;
    bool isClosed = false;
    try {
      process_request(connection, true, isClosed, prepareHead);
      connection.endPolitely();
    } catch (const TakenOver&) {
      if (current.answer) {
        answerDirectly(connection, *current.answer, [this] { return pause(); });
      }
    }
    visit = nullptr;
    return true;
  }

  /// Answers whether the door closed meanwhile.
  bool pause() {
    std::unique_lock lock(waiting_->mutex);
    return waiting_->changed.wait_for(lock, streamPause, [&] { return waiting_->hasEnded; });
  }

  const ServiceLimits limits_;
  const Door::Handler handler_;
  const std::shared_ptr<Waiting> waiting_;
  int port_ = 0;
  std::atomic<bool> hasListened_{false};
  std::thread thread_;
};

Door::Opened Door::open(const std::string& threadName, const std::string& address, int port,
                        const ServiceLimits& limits, Handler handler) {
  auto listener = std::make_unique<Listener>(limits, std::move(handler));
  if (!listener->open(threadName, address, port)) {
    return {nullptr, "The address " + address + ", port " + std::to_string(port) +
                         ", cannot be listened on."};
  }
  return {std::unique_ptr<Door>(new Door(std::move(listener))), ""};
}

Door::Door(std::unique_ptr<Listener> listener) : listener_(std::move(listener)) {}

Door::~Door() = default;

int Door::port() const { return listener_->port(); }

}  // namespace hlv::services
