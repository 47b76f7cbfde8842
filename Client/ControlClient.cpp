#include "Client/ControlClient.h"

namespace hlv::client {

Json ControlClient::send(const std::string& method, const std::string& target, Json body) const {
  ClientRequest request{method, target, std::move(body)};
  // The provider takes any key.
  request.apiKey = "paylevenkit";
  auto reply = provider_.send(std::move(request));
  if (!reply.error) return std::move(reply.body);
  throw ClientError(reply.error->localizedDescription().value_or("The service cannot be used."));
}

}  // namespace hlv::client
