// The backend over HTTP: guests and their cards. Private to the services.
#pragma once

#include <memory>

#include "Sandbox/Sandbox.h"
#include "Services/Http/Routes.h"
#include "Services/Idempotency.h"

namespace hlv::services {

/// Asks the sandbox's own client of the backend, so that rules, faults and journal are those of the
/// embedded one. It takes no card number: a text that may be one is refused.
///
/// Threading: any.
class BackendResources {
 public:
  explicit BackendResources(std::shared_ptr<sandbox::Sandbox> sandbox);

  void serve(const HttpRequest& request, const Reply& reply) const {
    routes_.serve(request, reply);
  }

 private:
  void addGuests();
  void addCards();

  const std::shared_ptr<sandbox::Sandbox> sandbox_;
  const Idempotency idempotency_;
  Routes routes_;
};

}  // namespace hlv::services
