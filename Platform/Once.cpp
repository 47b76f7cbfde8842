#include "Platform/Once.h"

#include <utility>

namespace hlv {

void Once::run(const std::function<void()>& body) {
  const std::lock_guard lock(mutex_);
  if (std::exchange(hasBegun_, true)) return;
  try {
    body();
  } catch (...) {
    hasBegun_ = false;
    throw;
  }
}

void Once::reset() {
  const std::lock_guard lock(mutex_);
  hasBegun_ = false;
}

}  // namespace hlv
