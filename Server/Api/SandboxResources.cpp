#include <utility>

#include "Sandbox/JSON/SandboxRecords.h"
#include "Server/Api/Resources.h"

namespace hlv::server {
namespace {

using sandbox::Json;

template <class Records>
Json listOf(const Records& records) {
  auto list = Json::array();
  for (const auto& each : records) list.push_back(sandbox::jsonOf(each));
  return list;
}

void create(Registry& registry, const Exchange& exchange, sandbox::NewSandbox wanted) {
  replyPerforming(exchange, registry, [&registry, wanted = std::move(wanted)] {
    return jsonReply(201, sandbox::jsonOf(registry.create(wanted)));
  });
}

/// One more than asked for shows whether there is a next page.
HttpReply page(std::vector<sandbox::SandboxDescription> sandboxes, std::size_t limit) {
  Json next;
  if (sandboxes.size() > limit) {
    sandboxes.pop_back();
    next = sandboxes.back().id;
  }
  return jsonReply(200, {{"sandboxes", listOf(sandboxes)}, {"next", next}});
}

}  // namespace

std::int64_t numberIn(const HttpRequest& request, const std::string& name, std::int64_t otherwise,
                      std::int64_t least, std::int64_t greatest) {
  const auto text = request.queryValue(name);
  if (!text) return otherwise;
  const auto value = sandbox::numberOf(*text);
  if (!value || *value < least || *value > greatest) {
    throw HttpError(422, "wrong-type", "'" + name + "' is no number of this kind.");
  }
  return *value;
}

std::function<HttpReply()> describing(Registry& registry, const std::string& id) {
  return [&registry, id] { return jsonReply(200, sandbox::jsonOf(registry.describe(id))); };
}

void addSandboxRoutes(ApiRoutes& routes, Registry& registry) {
  routes.add("GET", "v1/sandboxes", [&registry](const Exchange& exchange) {
    const auto limit = numberIn(exchange.request, "limit", 100, 1, 1'000);
    replyPerforming(exchange, registry,
                    [&registry, after = exchange.request.queryValue("after").value_or(""),
                     limit = static_cast<std::size_t>(limit)] {
                      return page(registry.list(after, limit + 1), limit);
                    });
  });
  routes.add("POST", "v1/sandboxes", [&registry](const Exchange& exchange) {
    create(registry, exchange, sandbox::newSandboxIn(exchange.body()));
  });
  routes.add("GET", "v1/sandboxes/*", [&registry](const Exchange& exchange) {
    replyPerforming(exchange, registry, describing(registry, exchange.part(2)));
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
    replyPerforming(exchange, registry, [&registry, id = exchange.part(2)] {
      registry.remove(id);
      return jsonReply(204, nullptr);
    });
  });
  routes.add("GET", "v1/snapshots", [&registry](const Exchange& exchange) {
    replyPerforming(exchange, registry, [&registry] {
      return jsonReply(200, {{"snapshots", listOf(registry.snapshots().list())}});
    });
  });
  routes.add("DELETE", "v1/snapshots/*", [&registry](const Exchange& exchange) {
    replyPerforming(exchange, registry, [&registry, snapshot = exchange.part(2)] {
      registry.snapshots().remove(snapshot);
      return jsonReply(204, nullptr);
    });
  });
}

}  // namespace hlv::server
