// Requests that create something, and may be sent again. Private to the services.
#pragma once

#include <memory>
#include <string>

#include "Sandbox/Sandbox.h"
#include "Services/Http/Routes.h"

namespace hlv::services {

/// A request with an `Idempotency-Key` has its effect once: sent again, it is answered what was
/// answered, also by another process on the same store. Failures of the service itself are not
/// kept, so that the request can be tried again. Of key and request the store has salted digests
/// alone; as the key is part of both, they cannot be guessed from a card.
///
/// Threading: any.
class Idempotency {
 public:
  /// Keys of services with different names have nothing to do with each other.
  Idempotency(std::string service, std::shared_ptr<sandbox::Sandbox> sandbox)
      : service_(std::move(service)), sandbox_(std::move(sandbox)) {}

  /// A handler that hands on what is new, and answers the rest.
  Routes::Handler around(Routes::Handler handler) const;

 private:
  const std::string service_;
  const std::shared_ptr<sandbox::Sandbox> sandbox_;
};

}  // namespace hlv::services
