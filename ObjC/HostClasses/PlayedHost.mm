#include "ObjC/HostClasses/PlayedHost.h"

#include "ObjC/HostClasses/Records.h"

namespace hlv::host_classes {
namespace {

struct Slot {
  std::mutex mutex;
  std::weak_ptr<PlayedHost> current;
};

Slot& slot() {
  static auto& slot = *new Slot;
  return slot;
}

}  // namespace

PlayedHost::~PlayedHost() {
  for (const auto& [guest, object] : guests_) [object release];
}

std::shared_ptr<PlayedHost> PlayedHost::current() {
  const std::lock_guard lock(slot().mutex);
  return slot().current.lock();
}

void PlayedHost::install(const std::shared_ptr<PlayedHost>& host) {
  const std::lock_guard lock(slot().mutex);
  slot().current = host;
}

::HLVSDKGuest* PlayedHost::objectOf(const std::shared_ptr<HLVSDKGuest>& guest) {
  const std::lock_guard lock(mutex_);
  auto& object = guests_[guest.get()];
  if (!object) object = newObject(guest);
  return [[object retain] autorelease];
}

std::shared_ptr<Host> playedHost() {
  const auto current = PlayedHost::current();
  return current ? current->host() : nullptr;
}

}  // namespace hlv::host_classes
