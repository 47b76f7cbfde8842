// Waits for what test control and the list of sandboxes return. Private to this folder.
#pragma once

#include <string>
#include <utility>

#include "Client/ClientError.h"
#include "Client/HttpClient.h"

namespace hlv::client {

/// Throws `ClientError` for every error, and for a reply that cannot be read.
///
/// Threading: any.
class ControlClient {
 public:
  explicit ControlClient(HttpClient provider) : provider_(std::move(provider)) {}

  Json send(const std::string& method, const std::string& target, Json body = {}) const {
    // The provider takes any key.
    auto reply = provider_.send({method, target, std::move(body), "paylevenkit"});
    if (!reply.error) return std::move(reply.body);
    throw ClientError(reply.error->localizedDescription().value_or("The service cannot be used."));
  }

  /// What `read` makes of the reply's body.
  template <class Read>
  auto send(const std::string& method, const std::string& target, Json body, Read read) const {
    try {
      return read(send(method, target, std::move(body)));
    } catch (const sandbox::InvalidRecord&) {
      throw ClientError("The service's reply cannot be read.");
    }
  }

 private:
  const HttpClient provider_;
};

}  // namespace hlv::client
