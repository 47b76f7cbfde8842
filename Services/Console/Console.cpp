#include "Services/Console/Console.h"

#include <utility>

#include "Services/Console/ConsoleResources.h"
#include "Services/Http/NamedDoor.h"

namespace hlv::services {

struct Console::Parts {
  Parts(const std::shared_ptr<sandbox::Sandbox>& sandbox, Listening where)
      : listening(std::move(where)),
        app(std::make_shared<App>(sandbox)),
        resources(sandbox, app, listening.beyondThisMachine) {}

  const Listening listening;
  const std::shared_ptr<App> app;
  const ConsoleResources resources;
  // Goes first.
  std::unique_ptr<Door> door;
};

Console::Opened Console::open(std::shared_ptr<sandbox::Sandbox> sandbox, const Listening& listening,
                              int port) {
  auto parts = std::make_unique<Parts>(sandbox, listening);
  auto opened =
      openNamedDoor(*sandbox, "console", port, listening,
                    [resources = &parts->resources](const auto& request, const auto& reply) {
                      resources->serve(request, reply);
                    });
  if (!opened.door) return {nullptr, opened.problem};
  parts->door = std::move(opened.door);
  return {std::unique_ptr<Console>(new Console(std::move(parts))), ""};
}

Console::Console(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

Console::~Console() = default;

std::string Console::url() const { return urlOf(*parts_->door, parts_->listening); }

void Console::look() { parts_->app->look(); }

}  // namespace hlv::services
