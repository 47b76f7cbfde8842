// The provider over HTTP: users and their instruments. Private to the services.
#pragma once

#include <memory>
#include <mutex>

#include "Sandbox/Sandbox.h"
#include "Services/Http/Routes.h"
#include "Services/Idempotency.h"

namespace hlv::services {

/// Asks the sandbox's own client of the provider. Every request but that for the document needs a
/// key in `X-API-Key`.
///
/// Threading: any.
class ProviderResources {
 public:
  explicit ProviderResources(std::shared_ptr<sandbox::Sandbox> sandbox);

  void serve(const HttpRequest& request, const Reply& reply);

 private:
  void addUsers();
  void addInstruments();

  const std::shared_ptr<sandbox::Sandbox> sandbox_;
  std::once_flag registered_;
  const Idempotency idempotency_;
  Routes routes_;
};

}  // namespace hlv::services
