#include "Server/Api/SandboxResources.h"

#include <utility>

#include "Sandbox/JSON/SandboxRecords.h"
#include "Server/Http/HttpError.h"

namespace hlv::server {
namespace {

using sandbox::Json;

HttpReply describing(Registry& registry, const std::string& id) {
  return jsonReply(200, sandbox::jsonOf(registry.describe(id)));
}

void create(Registry& registry, const Exchange& exchange, sandbox::NewSandbox wanted) {
  registry.perform(
      [&registry, wanted = std::move(wanted)] {
        return jsonReply(201, sandbox::jsonOf(registry.create(wanted)));
      },
      exchange.request.id, exchange.reply);
}

void list(Registry& registry, const Exchange& exchange) {
  constexpr std::int64_t most = 1'000;
  const auto limit = sandbox::numberOf(exchange.request.queryValue("limit").value_or("100"));
  if (!limit || *limit < 1 || *limit > most) {
    throw HttpError(422, "wrong-type", "'limit' is a number from 1 to 1000.");
  }
  registry.perform(
      [&registry, after = exchange.request.queryValue("after").value_or(""), limit = *limit] {
        // One more shows whether there is a next page.
        auto sandboxes = registry.list(after, static_cast<std::size_t>(limit) + 1);
        Json next;
        if (sandboxes.size() > static_cast<std::size_t>(limit)) {
          sandboxes.pop_back();
          next = sandboxes.back().id;
        }
        auto array = Json::array();
        for (const auto& each : sandboxes) array.push_back(sandbox::jsonOf(each));
        return jsonReply(200, {{"sandboxes", std::move(array)}, {"next", next}});
      },
      exchange.request.id, exchange.reply);
}

void addSnapshots(ApiRoutes& routes, Registry& registry) {
  routes.add("GET", "v1/snapshots", [&registry](const Exchange& exchange) {
    registry.perform(
        [&registry] {
          auto array = Json::array();
          for (const auto& each : registry.snapshots()) array.push_back(sandbox::jsonOf(each));
          return jsonReply(200, {{"snapshots", std::move(array)}});
        },
        exchange.request.id, exchange.reply);
  });
  routes.add("DELETE", "v1/snapshots/*", [&registry](const Exchange& exchange) {
    registry.perform(
        [&registry, snapshot = exchange.part(2)] {
          registry.removeSnapshot(snapshot);
          return jsonReply(204, nullptr);
        },
        exchange.request.id, exchange.reply);
  });
}

}  // namespace

void addSandboxRoutes(ApiRoutes& routes, Registry& registry) {
  routes.add("GET", "v1/sandboxes",
             [&registry](const Exchange& exchange) { list(registry, exchange); });
  routes.add("POST", "v1/sandboxes", [&registry](const Exchange& exchange) {
    create(registry, exchange, sandbox::newSandboxIn(exchange.body()));
  });
  routes.add("GET", "v1/sandboxes/*", [&registry](const Exchange& exchange) {
    registry.perform([&registry, id = exchange.part(2)] { return describing(registry, id); },
                     exchange.request.id, exchange.reply);
  });
  routes.add("PUT", "v1/sandboxes/*", [&registry](const Exchange& exchange) {
    const bool isEmpty = exchange.request.body.empty();
    auto wanted = isEmpty ? sandbox::NewSandbox() : sandbox::newSandboxIn(exchange.body());
    if (wanted.id && *wanted.id != exchange.part(2)) {
      throw HttpError(422, "invalid-id", "The path names another sandbox than the body.");
    }
    wanted.id = exchange.part(2);
    create(registry, exchange, std::move(wanted));
  });
  routes.add("DELETE", "v1/sandboxes/*", [&registry](const Exchange& exchange) {
    registry.perform(
        [&registry, id = exchange.part(2)] {
          registry.remove(id);
          return jsonReply(204, nullptr);
        },
        exchange.request.id, exchange.reply);
  });
  addSnapshots(routes, registry);
}

}  // namespace hlv::server
