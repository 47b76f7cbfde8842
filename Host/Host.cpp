#include "Host/Host.h"

#include <atomic>
#include <cstdio>

#include "Platform/SharedSlot.h"

namespace hlv {

std::shared_ptr<Host> Host::current() { return processSlot<Host>().load(); }

void Host::install(std::shared_ptr<Host> host) { processSlot<Host>().store(std::move(host)); }

void Host::sayOnceThatNoneIsInstalled() {
  static std::atomic_flag said;
  if (said.test_and_set()) return;
  std::fputs(
      "HLVSDKPaylevenKit: no host is installed, so host services return nothing. Call "
      "hlv::Host::install() before enabling the kit.\n",
      stderr);
}

}  // namespace hlv
