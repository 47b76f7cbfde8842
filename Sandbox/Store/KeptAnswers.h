// What was answered to requests that may be sent again. Private to the sandbox and its services.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace hlv::sandbox {

class Store;

/// Knows keys and requests by their digests only; an answer is kept as it was given, and so must
/// hold nothing that a store may not. The last ten thousand are kept.
///
/// Threading: any, and several processes. Every member throws std::runtime_error when the store
/// fails.
class KeptAnswers {
 public:
  explicit KeptAnswers(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  struct Answer {
    /// Of the request that was answered.
    std::string request;
    std::int64_t status = 0;
    std::string body;
  };

  /// What was answered to the request with that key; missing when nothing was.
  std::optional<Answer> find(const std::string& key);
  /// Throws when the key has an answer already.
  void keep(const std::string& key, const Answer& answer);
  /// What `body` does to the store, on this thread, is done as a whole when this returns, and not
  /// at all when it throws: an effect and its answer are there together or neither is.
  void asOne(const std::function<void()>& body);
  /// Forgets everything, so that every key is new.
  void forgetAll();

  /// The store's own; mixed into every digest.
  std::string salt();

 private:
  const std::shared_ptr<Store> store_;
};

}  // namespace hlv::sandbox
