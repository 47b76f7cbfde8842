// The console over HTTP: its page, and what the page asks for. Private to the services.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "Sandbox/Sandbox.h"
#include "Services/Console/App.h"
#include "Services/Http/Routes.h"

namespace hlv::services {

/// A card may be typed into the app here, as into any app; its number goes to the kit and nowhere
/// else, and no answer has it.
///
/// Threading: any.
class ConsoleResources {
 public:
  /// With `anyName`, it answers under whatever name it is called by. Without, only as this machine:
  /// a page from elsewhere that has its own name point here is not answered.
  ConsoleResources(std::shared_ptr<sandbox::Sandbox> sandbox, std::shared_ptr<App> app,
                   bool anyName);

  void serve(const HttpRequest& request, const Reply& reply) const;

 private:
  void addPage();
  void addStory();
  void addApp();
  void addCards();
  void addTester();

  const std::shared_ptr<sandbox::Sandbox> sandbox_;
  const std::shared_ptr<App> app_;
  const bool anyName_;
  const std::shared_ptr<std::atomic<int>> listeners_ = std::make_shared<std::atomic<int>>(0);
  Routes routes_;
};

}  // namespace hlv::services
