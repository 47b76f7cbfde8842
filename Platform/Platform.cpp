#include "Platform/Platform.h"

#include "Platform/Default/DefaultPlatform.h"
#include "Platform/SharedSlot.h"

namespace hlv {
namespace {

SharedSlot<Platform>& installed() {
  static SharedSlot<Platform> slot;
  return slot;
}

}  // namespace

std::shared_ptr<Platform> Platform::current() {
  if (auto platform = installed().load()) return platform;
  return DefaultPlatform::shared();
}

void Platform::install(std::shared_ptr<Platform> platform) {
  installed().store(std::move(platform));
}

}  // namespace hlv
