// What a listener serves: the resources of the sandboxes. Private to the server.
#pragma once

#include <string>
#include <utility>

#include "Server/Api/Exchange.h"
#include "Server/Api/Registry.h"
#include "Server/Http/HttpMessages.h"

namespace hlv::sandbox::server {

/// Finds the sandbox that a request is about: the one below whose /sandboxes/ID it lies, or the
/// default one. Puts every request on that sandbox's record; those about no sandbox that is open,
/// on the default one's.
///
/// Threading: any, once the routes are filled.
class ApiHandler final : public HttpHandler {
 public:
  /// The registry outlives the handler. With `needsKey` a request other than for a document of the
  /// service needs a key in `X-API-Key`.
  ApiHandler(std::string listener, Registry& registry, bool needsKey)
      : listener_(std::move(listener)), registry_(registry), needsKey_(needsKey) {}

  ApiRoutes& routes() { return routes_; }
  /// Those below no sandbox: of all of them, and documents.
  ApiRoutes& commonRoutes() { return commonRoutes_; }

  void handle(const HttpRequest& request, Reply reply) override;
  void finished(const FinishedRequest& request) override;

 private:
  const std::string listener_;
  Registry& registry_;
  const bool needsKey_;
  ApiRoutes routes_;
  ApiRoutes commonRoutes_;
};

}  // namespace hlv::sandbox::server
