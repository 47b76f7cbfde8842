// Speaks to one service over HTTP. Private to the services.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "Platform/Error.h"
#include "Services/Json.h"
#include "Services/Remote/ServiceURL.h"

namespace hlv::services {

struct ClientRequest {
  std::string method;
  /// Encoded, the query included.
  std::string target;
  /// Null is no body.
  Json body;
  NullableString apiKey;
};

struct ClientAnswer {
  /// The transport's error, or the one that the service answered with.
  ErrorPtr error;
  /// Null is no content.
  Json body;
};

/// One request a connection. Whatever goes wrong on the way is one error of
/// `sandbox::transportErrorDomain`; an answer that is late, broken or larger than any of the
/// services' is no answer. What was sent is overwritten afterwards, since it may hold card data.
///
/// Threading: any.
class HttpClient {
 public:
  HttpClient(ServiceURL url, std::chrono::milliseconds patience)
      : url_(std::move(url)), patience_(patience) {}

  /// Waits for the answer.
  ClientAnswer send(ClientRequest request) const;

 private:
  const ServiceURL url_;
  const std::chrono::milliseconds patience_;
};

}  // namespace hlv::services
