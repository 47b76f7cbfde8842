#include "Platform/SharedSlot.h"

namespace hlv {

std::shared_ptr<void> AnySharedSlot::loadAny() const {
  const Lock lock(mutex_);
  return value_;
}

void AnySharedSlot::storeAny(std::shared_ptr<void> value) {
  const Lock lock(mutex_);
  value_.swap(value);
  // `value`, the parameter, outlives the lock.
}

}  // namespace hlv
