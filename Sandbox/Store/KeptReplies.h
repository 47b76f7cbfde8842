// What was replied to requests that may be sent again. Private to the sandbox and the server.
//
// Threading: inside `Store::read` and `Store::write`. What changes a store throws `StoreFailure`.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Sandbox/Store/Database.h"

namespace hlv::sandbox {

/// Knows keys and requests by their digests only; a reply is kept as it was given, and so must hold
/// nothing that a store may not. The last ten thousand are kept.
struct KeptReply {
  /// Of the request that was replied to.
  std::string request;
  std::int64_t status = 0;
  std::string body;
};

/// What was replied to the request with that key; missing when nothing was.
std::optional<KeptReply> findKeptReply(Database& database, const std::string& key);
/// The key must have no reply yet.
void keepReply(Database& database, const std::string& key, const KeptReply& reply);
/// Forgets everything, so that every key is new.
void forgetKeptReplies(Database& database);

/// The store's own; mixed into every digest.
std::string keptRepliesSalt(Database& database);

}  // namespace hlv::sandbox
