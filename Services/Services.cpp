#include "Services/Services.h"

#include <utility>

#include "Sandbox/Service/FaultOnTheWay.h"
#include "Services/BackendResources.h"
#include "Services/Http/Door.h"
#include "Services/ProviderResources.h"

namespace hlv::services {
namespace {

Mishap mishapNow() {
  const auto kind = sandbox::FaultOnTheWay::current();
  if (kind == "refused") return Mishap::refused;
  if (kind == "reset") return Mishap::reset;
  return kind == "garbage" ? Mishap::garbage : Mishap::none;
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
  Parts(const std::shared_ptr<sandbox::Sandbox>& sandbox, std::string listenedAddress)
      : address(std::move(listenedAddress)), backend(sandbox), provider(sandbox) {}

  std::string urlOf(const Door& door) const {
    return "http://" + address + ":" + std::to_string(door.port());
  }

  const std::string address;
  BackendResources backend;
  ProviderResources provider;
  // The doors go first.
  std::unique_ptr<Door> backendDoor;
  std::unique_ptr<Door> providerDoor;
};

Services::Opened Services::open(std::shared_ptr<sandbox::Sandbox> sandbox,
                                const ServicesOptions& options) {
  if (options.address != "127.0.0.1" && !options.listensBeyondThisMachine) {
    return {nullptr,
            "The services listen on this machine alone, at 127.0.0.1, unless they are told "
            "to listen beyond it."};
  }
  auto parts = std::make_unique<Parts>(sandbox, options.address);
  auto backend = Door::open("http-backend", options.address, options.backendPort, options.limits,
                            serving(parts->backend));
  if (!backend.door) return {nullptr, backend.problem};
  parts->backendDoor = std::move(backend.door);
  auto provider = Door::open("http-provider", options.address, options.providerPort, options.limits,
                             serving(parts->provider));
  if (!provider.door) return {nullptr, provider.problem};
  parts->providerDoor = std::move(provider.door);
  return {std::unique_ptr<Services>(new Services(std::move(parts))), ""};
}

Services::Services(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

Services::~Services() = default;

std::string Services::backendURL() const { return parts_->urlOf(*parts_->backendDoor); }

std::string Services::providerURL() const { return parts_->urlOf(*parts_->providerDoor); }

}  // namespace hlv::services
