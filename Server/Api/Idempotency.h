// Requests that create something, and may be sent again. Private to the server.
//
// Threading: plain values; members that take a database run inside `Store::write`.
#pragma once

#include <optional>
#include <string>

#include "Sandbox/Store/Database.h"
#include "Server/Http/HttpMessages.h"

namespace hlv::sandbox::server {

/// A request with an `Idempotency-Key` has its effect once: sent again, it gets the same reply,
/// also from another process on the same store. The reply is kept in one transaction with the
/// effect, so that a process may end at any moment. Failures of the service itself are not kept,
/// and the request can be tried again. Of key and request the store has salted digests alone; as
/// the key is part of both, they cannot be guessed from a card.
class IdempotentRequest {
 public:
  /// Keys of services with different names have nothing to do with each other. Throws `HttpError`
  /// for a key that cannot be read. The request must have one.
  IdempotentRequest(const HttpRequest& request, const std::string& service,
                    const std::string& salt);

  /// The reply to the same request before, if there was one. Throws `HttpError` where the key
  /// belongs to another request.
  std::optional<HttpReply> keptReply(Database& database, const std::string& requestID) const;
  /// Keeps a reply that is no failure of the service, and the last ten thousand of all.
  void keep(Database& database, const HttpReply& reply) const;

  /// The store's own; mixed into every digest.
  static std::string salt(Database& database);

 private:
  std::string key_;
  std::string digest_;
};

}  // namespace hlv::sandbox::server
