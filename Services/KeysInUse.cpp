#include "Services/KeysInUse.h"

#include <utility>

#include "Services/Http/Refused.h"

namespace hlv::services {

std::unique_ptr<KeysInUse::Use> KeysInUse::begin(const std::string& key) {
  const std::lock_guard lock(mutex_);
  if (!keys_.insert(key).second) {
    throw Refused{409, "idempotency-key-in-use",
                  "The first request with the idempotency key has no answer yet."};
  }
  return std::make_unique<Use>(shared_from_this(), key);
}

KeysInUse::Use::Use(std::shared_ptr<KeysInUse> all, std::string key)
    : all_(std::move(all)), key_(std::move(key)) {}

KeysInUse::Use::~Use() {
  const std::lock_guard lock(all_->mutex_);
  all_->keys_.erase(key_);
}

}  // namespace hlv::services
