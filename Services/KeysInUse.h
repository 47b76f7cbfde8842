// Idempotency keys whose requests are under way in this process. Private to the services.
#pragma once

#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace hlv::services {

/// Threading: any.
class KeysInUse : public std::enable_shared_from_this<KeysInUse> {
 public:
  /// In use while it lives.
  class Use;

  /// Throws `Refused` where the key is in use already.
  std::unique_ptr<Use> begin(const std::string& key);

 private:
  std::mutex mutex_;
  std::set<std::string> keys_;
};

class KeysInUse::Use {
 public:
  Use(std::shared_ptr<KeysInUse> all, std::string key);
  ~Use();
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;

 private:
  const std::shared_ptr<KeysInUse> all_;
  const std::string key_;
};

}  // namespace hlv::services
