#include "Sandbox/JSON/SandboxRecords.h"
#include "Server/Api/Resources.h"

namespace hlv::sandbox::server {
namespace {

HttpReply create(Registry& registry, const NewSandbox& wanted) {
  return jsonReply(201, jsonOf(registry.create(wanted)));
}

/// One more than asked for shows whether there is a next page.
HttpReply page(std::vector<SandboxDescription> sandboxes, std::size_t limit) {
  Json next;
  if (sandboxes.size() > limit) {
    sandboxes.pop_back();
    next = sandboxes.back().id;
  }
  return jsonReply(200, {{"sandboxes", listOf(sandboxes)}, {"next", next}});
}

}  // namespace

std::function<HttpReply()> describing(Registry& registry, const std::string& id) {
  return [&registry, id] { return jsonReply(200, jsonOf(registry.describe(id))); };
}

void addSandboxRoutes(ApiRoutes& routes, Registry& registry) {
  routes.perform("GET", "v1/sandboxes", registry, [&registry](const Exchange& exchange) {
    const auto limit = static_cast<std::size_t>(exchange.number("limit", 100, 1, 1'000));
    return page(registry.list(exchange.request.queryValue("after").value_or(""), limit + 1), limit);
  });
  routes.perform("POST", "v1/sandboxes", registry, [&registry](const Exchange& exchange) {
    return create(registry, newSandboxIn(exchange.body()));
  });
  routes.perform("GET", "v1/sandboxes/*", registry, [&registry](const Exchange& exchange) {
    return describing(registry, exchange.part(2))();
  });
  routes.perform("PUT", "v1/sandboxes/*", registry, [&registry](const Exchange& exchange) {
    const bool isEmpty = exchange.request.body.empty();
    auto wanted = isEmpty ? NewSandbox() : newSandboxIn(exchange.body());
    if (wanted.id && *wanted.id != exchange.part(2)) {
      throw HttpError(422, "invalid-id", "The path names another sandbox than the body.");
    }
    wanted.id = exchange.part(2);
    return create(registry, wanted);
  });
  routes.perform("DELETE", "v1/sandboxes/*", registry, [&registry](const Exchange& exchange) {
    registry.remove(exchange.part(2));
    return jsonReply(204, nullptr);
  });
  routes.perform("GET", "v1/snapshots", registry, [&registry](const Exchange&) {
    return jsonReply(200, {{"snapshots", listOf(registry.snapshots())}});
  });
  routes.perform("DELETE", "v1/snapshots/*", registry, [&registry](const Exchange& exchange) {
    registry.removeSnapshot(exchange.part(2));
    return jsonReply(204, nullptr);
  });
}

}  // namespace hlv::sandbox::server
