#include "ObjC/Sandbox/OpenSandbox.h"

#include "ObjC/Sandbox/SandboxGuest.h"

namespace hlv::sandbox::objc {
namespace {

struct Slot {
  std::mutex mutex;
  std::weak_ptr<OpenSandbox> current;
};

Slot& slot() {
  static auto& slot = *new Slot;
  return slot;
}

}  // namespace

OpenSandbox::~OpenSandbox() {
  for (const auto& [guest, object] : guests_) [object release];
}

std::shared_ptr<OpenSandbox> OpenSandbox::current() {
  const std::lock_guard lock(slot().mutex);
  return slot().current.lock();
}

void OpenSandbox::letPlay(const std::shared_ptr<OpenSandbox>& sandbox) {
  const std::lock_guard lock(slot().mutex);
  slot().current = sandbox;
}

::HLVSDKGuest* OpenSandbox::objectOf(const std::shared_ptr<HLVSDKGuest>& guest) {
  const std::lock_guard lock(mutex_);
  auto& object = guests_[guest.get()];
  if (!object) object = [[SandboxGuest alloc] initWithGuest:guest];
  return [[object retain] autorelease];
}

std::shared_ptr<Host> openHost() {
  const auto open = OpenSandbox::current();
  return open ? open->sandbox().host() : nullptr;
}

}  // namespace hlv::sandbox::objc
