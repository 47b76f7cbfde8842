#include "ObjC/Host/Install.h"

#include <mutex>

#include "Host/Host.h"
#include "ObjC/Foundation/BlocksRuntime.h"
#include "ObjC/Foundation/FoundationPlatform.h"
#include "ObjC/Host/FrameworkHost.h"

namespace hlv::objc {

void install() {
  static std::once_flag once;
  std::call_once(once, [] {
    keepCapturedObjects();
    if (Host::current()) return;
    Platform::install(std::make_shared<FoundationPlatform>());
    Host::install(std::make_shared<FrameworkHost>());
  });
}

}  // namespace hlv::objc
