// Speaks to one service over HTTP. Private to this folder.
#pragma once

#include <chrono>
#include <memory>
#include <utility>

#include "Client/HttpLoop.h"

namespace hlv::client {

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

 private:
  const ServiceURL url_;
  const std::chrono::milliseconds timeout_;
  const std::shared_ptr<HttpLoop> loop_;
};

}  // namespace hlv::client
