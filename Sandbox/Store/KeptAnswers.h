// What was answered to requests that may be sent again. Private to the sandbox and its services.
#pragma once

#include <cstdint>
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
    std::int64_t status = 0;
    std::string body;
  };
  enum class State {
    /// The key is new: the caller answers the request, and then keeps the answer or releases the
    /// key.
    claimed,
    /// An earlier request with the key was another one.
    differs,
    /// An earlier one is under way, or was lost with its process.
    unfinished,
    answered,
  };
  struct Claim {
    State state;
    std::optional<Answer> answer;
  };

  Claim claim(const std::string& key, const std::string& request);
  void keep(const std::string& key, const Answer& answer);
  /// Forgets a claim.
  void release(const std::string& key);
  /// Forgets everything, so that every key is new.
  void forgetAll();

  /// The store's own; mixed into every digest.
  std::string salt();

 private:
  const std::shared_ptr<Store> store_;
};

}  // namespace hlv::sandbox
