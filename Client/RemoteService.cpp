#include "Client/RemoteService.h"

#include <random>
#include <stdexcept>

#include "Host/HLVSDKCoreKit/HLVSDKReachability.h"

namespace hlv::client {

std::string RemoteService::freshIdempotencyKey() {
  // Letters only, so that none looks like a card number.
  std::random_device random;
  std::uniform_int_distribution<int> letter('a', 'p');
  std::string key;
  for (int i = 0; i < 32; ++i) key += static_cast<char>(letter(random));
  return key;
}

void RemoteService::Context::recordCall(const std::string& description) const {
  local->journal().record("kit", name, description);
}

void RemoteService::Context::recordReply(const std::string& description,
                                         const std::string& result) const {
  try {
    local->journal().record(name, "kit", description, result);
  } catch (const std::runtime_error&) {
    // The store has stopped working; the call completes all the same.
  }
}

void RemoteService::Context::requireNetwork() const {
  if (!isReachable(local->host()->reachability()->currentState())) {
    throw sandbox::Refusal{sandbox::notConnectedError()};
  }
}

}  // namespace hlv::client
