#include "Platform/Platform.h"

#include "Platform/Default/DefaultPlatform.h"
#include "Platform/SharedSlot.h"

namespace hlv {

std::shared_ptr<Platform> Platform::current() {
  if (auto platform = processSlot<Platform>().load()) return platform;
  return DefaultPlatform::shared();
}

void Platform::install(std::shared_ptr<Platform> platform) {
  processSlot<Platform>().store(std::move(platform));
}

}  // namespace hlv
