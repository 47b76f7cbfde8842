#include "Server/Api/ApiHandler.h"

#include <utility>

#include "Sandbox/Provider/Provider.h"

namespace hlv::sandbox::server {
namespace {

using Trace = std::shared_ptr<RequestTrace>;

/// Where in a path the sandbox's own part begins, and which sandbox that is.
struct Place {
  std::size_t skipped = 0;
  std::string sandbox = Registry::defaultID;
};

Place placeOf(const std::vector<std::string>& path) {
  if (path.size() < 2 || path[0] != "sandboxes") return {};
  return {2, path[1]};
}

bool isDocument(const std::vector<std::string>& path) {
  return !path.empty() && path.back() == "openapi.json";
}

bool isCommon(const std::vector<std::string>& path) {
  return (path.size() > 1 && path[0] == "v1" &&
          (path[1] == "sandboxes" || path[1] == "snapshots")) ||
         isDocument(path);
}

}  // namespace

void ApiHandler::handle(const HttpRequest& request, Reply reply) {
  const auto trace = std::make_shared<RequestTrace>();
  try {
    if (needsKey_ && !isDocument(request.path) && length(request.apiKey) == 0) {
      provider::refuseUnregistered();
    }
    const auto replyWithTrace = [trace, reply](HttpReply made) {
      made.context = trace;
      reply(std::move(made));
    };
    if (isCommon(request.path)) {
      return commonRoutes_.find(request)({request, 0, nullptr, trace, replyWithTrace});
    }
    const auto [skipped, id] = placeOf(request.path);
    // What is at no path needs no sandbox to be opened.
    const auto& route = routes_.find(request, skipped);
    trace->sandbox = registry_.open(id);
    route({request, skipped, trace->sandbox, trace, replyWithTrace});
  } catch (...) {
    reply(failureReply(trace->sandbox, request.id));
  }
}

void ApiHandler::finished(const FinishedRequest& finished) {
  const auto* context = std::any_cast<Trace>(&finished.reply.context);
  const auto trace = context ? *context : std::make_shared<RequestTrace>();
  auto sandbox = std::move(trace->sandbox);
  if (!sandbox) sandbox = registry_.findOpen(placeOf(finished.request.path).sandbox);
  if (!sandbox) sandbox = registry_.findOpen(Registry::defaultID);
  sandbox->log().add(finished, listener_, trace->fault, std::move(trace->events));
}

}  // namespace hlv::sandbox::server
