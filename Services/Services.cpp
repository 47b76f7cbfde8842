#include "Services/Services.h"

#include <utility>

#include "Sandbox/Service/FaultOnTheWay.h"
#include "Services/BackendResources.h"
#include "Services/Http/NamedDoor.h"
#include "Services/ProviderResources.h"

namespace hlv::services {
namespace {

Mishap mishapNow() {
  const auto kind = sandbox::FaultOnTheWay::current();
  if (kind == "refused") return Mishap::refused;
  if (kind == "reset") return Mishap::reset;
  if (kind == "garbage") return Mishap::garbage;
  return kind == "twice" ? Mishap::twice : Mishap::none;
}

/// The door lets happen to an answer what the armed fault demands.
template <class Resources>
Door::Handler serving(Resources& resources) {
  return [&resources](const HttpRequest& request, const Reply& reply) {
    resources.serve(request, [reply](HttpAnswer answer) {
      answer.mishap = mishapNow();
      reply(std::move(answer));
    });
  };
}

}  // namespace

struct Services::Parts {
  Parts(const std::shared_ptr<sandbox::Sandbox>& sandbox, Listening where)
      : listening(std::move(where)), backend(sandbox), provider(sandbox) {}

  const Listening listening;
  BackendResources backend;
  ProviderResources provider;
  // The doors go first.
  std::unique_ptr<Door> backendDoor;
  std::unique_ptr<Door> providerDoor;
};

Services::Opened Services::open(std::shared_ptr<sandbox::Sandbox> sandbox,
                                const ServicesOptions& options) {
  const auto& listening = options.listening;
  auto parts = std::make_unique<Parts>(sandbox, listening);
  auto backend =
      openNamedDoor(*sandbox, "backend", options.backendPort, listening, serving(parts->backend));
  if (!backend.door) return {nullptr, backend.problem};
  parts->backendDoor = std::move(backend.door);
  auto provider = openNamedDoor(*sandbox, "provider", options.providerPort, listening,
                                serving(parts->provider));
  if (!provider.door) return {nullptr, provider.problem};
  parts->providerDoor = std::move(provider.door);
  return {std::unique_ptr<Services>(new Services(std::move(parts))), ""};
}

Services::Services(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

Services::~Services() = default;

std::string Services::backendURL() const { return urlOf(*parts_->backendDoor, parts_->listening); }

std::string Services::providerURL() const {
  return urlOf(*parts_->providerDoor, parts_->listening);
}

}  // namespace hlv::services
