// Speaks to services over HTTP, on one event loop. Private to this folder.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "Client/ClientError.h"
#include "Client/ServiceURL.h"
#include "Sandbox/JSON/Json.h"
#include "Values/Error.h"
#include "Values/NullableString.h"

namespace hlv::client {

using sandbox::Json;

struct ClientRequest {
  std::string method = {};
  /// Below the service's URL; encoded, the query included.
  std::string target = {};
  /// Null is no body.
  Json body = nullptr;
  NullableString apiKey = std::nullopt;
  /// What the backend returned when the guest signed in.
  NullableString session = std::nullopt;
  /// With one the service runs the request once, however often it arrives.
  NullableString idempotencyKey = std::nullopt;
};

struct ClientReply {
  /// The transport's error, or the one that the service returned.
  ErrorPtr error;
  /// Null is no content.
  Json body;
};

/// One thread, which starts with the first call, and the connections that are kept for the next
/// ones. No thread waits for a reply.
///
/// Threading: any; it may be destroyed on its own thread. Calls that have not ended then are
/// freed, and their completions are not called.
class HttpLoop {
 public:
  /// Makes the request, on the loop's thread. Throws `sandbox::Refusal` with the error that the
  /// call ends with.
  using RequestMaker = std::function<ClientRequest()>;
  /// Called once, on the loop's thread.
  using Completion = std::function<void(ClientReply)>;

  HttpLoop();
  ~HttpLoop();
  HttpLoop(const HttpLoop&) = delete;
  HttpLoop& operator=(const HttpLoop&) = delete;

  void send(const ServiceURL& url, std::chrono::milliseconds timeout, RequestMaker request,
            Completion completion);
  /// Whether every call has ended and is freed. When one ends, the main queue gets an empty block,
  /// so that a pump asks again.
  bool isIdle() const;
  bool isOwnThread() const;

 private:
  struct State;

  // The thread holds it too, so that the loop can be destroyed on it.
  const std::shared_ptr<State> state_;
  std::once_flag started_;
  std::thread thread_;
};

/// Whatever goes wrong on the way is one error of `sandbox::transportErrorDomain`. A reply that is
/// late, broken or larger than any of a service's is such an error.
///
/// Threading: any.
class HttpClient {
 public:
  /// `timeout` is for one request, from its beginning to the end of its reply.
  HttpClient(ServiceURL url, std::chrono::milliseconds timeout, std::shared_ptr<HttpLoop> loop)
      : url_(std::move(url)), timeout_(timeout), loop_(std::move(loop)) {}

  /// Returns at once. Whoever keeps the completion keeps no loop alive with it.
  void send(HttpLoop::RequestMaker request, HttpLoop::Completion completion) const {
    loop_->send(url_, timeout_, std::move(request), std::move(completion));
  }
  /// Waits for the reply; on the loop's own thread too, where completions run.
  ClientReply send(ClientRequest request) const;
  /// The same for test control and the list of sandboxes. Throws `ClientError` for every error, and
  /// for a reply that cannot be read.
  Json ask(const std::string& method, const std::string& target, Json body = {}) const;
  /// What `read` makes of the reply's body.
  template <class Read>
  auto ask(const std::string& method, const std::string& target, Json body, Read read) const {
    try {
      return read(ask(method, target, std::move(body)));
    } catch (const sandbox::InvalidRecord&) {
      throw ClientError("The service's reply cannot be read.");
    }
  }

 private:
  const ServiceURL url_;
  const std::chrono::milliseconds timeout_;
  const std::shared_ptr<HttpLoop> loop_;
};

}  // namespace hlv::client
