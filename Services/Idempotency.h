// Requests that create something, and may be sent again. Private to the services.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Sandbox/Sandbox.h"
#include "Services/Http/Routes.h"
#include "Services/KeysInUse.h"

namespace hlv::services {

/// A request with an `Idempotency-Key` has its effect once: sent again, it is answered what was
/// answered, also by another process on the same store. The answer is kept in one transaction with
/// the effect, so that a process may end at any moment. Failures of the service itself are not
/// kept, and the request can be tried again. Of key and request the store has salted digests alone;
/// as the key is part of both, they cannot be guessed from a card.
///
/// Threading: any.
class Idempotency {
 public:
  /// Keys of services with different names have nothing to do with each other.
  Idempotency(std::string service, std::shared_ptr<sandbox::Sandbox> sandbox)
      : service_(std::move(service)), sandbox_(std::move(sandbox)) {}

  /// Asks one call of the services of that host.
  using Handler =
      std::function<void(const std::shared_ptr<Host>&, const HttpRequest&, const Reply&)>;
  /// A handler that hands on what is new, and answers the rest.
  Routes::Handler around(Handler handler) const;

 private:
  const std::string service_;
  const std::shared_ptr<sandbox::Sandbox> sandbox_;
  const std::shared_ptr<KeysInUse> inUse_ = std::make_shared<KeysInUse>();
};

}  // namespace hlv::services
