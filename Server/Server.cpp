#include "Server/Server.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <thread>
#include <utility>

#include "Sandbox/JSON/Json.h"
#include "Server/Api/ApiHandler.h"
#include "Server/Api/Registry.h"
#include "Server/Api/Resources.h"
#include "Server/Console/App.h"
#include "Server/Console/Console.h"
#include "Server/Http/HttpListener.h"

namespace hlv::server {
namespace {

constexpr std::chrono::milliseconds maintenancePeriod{200};

/// One of the three listeners.
struct Listening {
  ApiHandler handler;
  int wantedPort;
  std::string url;
  std::unique_ptr<HttpListener> listener = {};
};

int portIn(const std::string& text) {
  constexpr std::int64_t greatest = 65'535;
  const auto port = sandbox::numberOf(text).value_or(0);
  return port > 0 && port <= greatest ? static_cast<int>(port) : 0;
}

std::string noteOf(const std::string& name) { return "port of the " + name; }

}  // namespace

struct Server::Parts {
  explicit Parts(const ServerOptions& options)
      : registry(options.storePath, options.seed, writers),
        loops(options.loops == 0 ? cores : options.loops),
        backend{ApiHandler("backend", registry, false), options.backendPort, options.backendURL},
        provider{ApiHandler("provider", registry, true), options.providerPort, options.providerURL},
        console{ApiHandler("console", registry, false), options.consolePort, options.consoleURL} {
    addBackendRoutes(backend.handler.routes());
    addProviderRoutes(provider.handler.routes());
    addConsoleRoutes(console.handler.routes(), registry, app);
    for (auto* each : {&provider, &console}) {
      addControlRoutes(each->handler.routes(), registry);
      auto& common = each->handler.commonRoutes();
      addSandboxRoutes(common, registry);
      common.add("GET", "v1/sandbox/openapi.json", replyingDocument(openAPI("control")));
      common.add("GET", "v1/sandboxes/openapi.json", replyingDocument(openAPI("sandboxes")));
    }
    backend.handler.commonRoutes().add("GET", "openapi.json", replyingDocument(openAPI("backend")));
    provider.handler.commonRoutes().add("GET", "openapi.json",
                                        replyingDocument(openAPI("provider")));
  }

  ~Parts() {
    for (auto* each : {&backend, &provider, &console}) each->listener.reset();
    loops.stop();
    writers->join();
  }

  /// Throws `Problem`.
  void listen(const ListenOptions& listening) {
    const std::array<std::pair<const char*, Listening*>, 3> all{
        {{"backend", &backend}, {"provider", &provider}, {"console", &console}}};
    for (const auto& [name, each] : all) each->listener = listenAgain(name, *each, listening);
    for (const auto& [name, each] : all) {
      const auto port = std::to_string(each->listener->port());
      if (registry.note(noteOf(name)) != port) registry.setNote(noteOf(name), port);
      if (each->url.empty()) each->url = "http://" + listening.address + ":" + port;
    }
    registry.setURLs({backend.url, provider.url, console.url});
  }

  /// At the port of the store's last server, so that whoever kept its URL finds it again.
  std::unique_ptr<HttpListener> listenAgain(const std::string& name, Listening& wanted,
                                            ListenOptions listening) {
    if (wanted.wantedPort == 0) {
      listening.port = portIn(registry.note(noteOf(name)).value_or(""));
      try {
        return std::make_unique<HttpListener>(loops, listening, wanted.handler);
      } catch (const Problem&) {
        // Another program has it now.
      }
    }
    listening.port = wanted.wantedPort;
    return std::make_unique<HttpListener>(loops, listening, wanted.handler);
  }

  void maintain() {
    registry.runMaintenance();
    loops.after(maintenancePeriod, [this] { maintain(); });
  }

  const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
  const std::shared_ptr<Writers> writers = std::make_shared<Writers>(cores);
  Registry registry;
  const std::shared_ptr<App> app = std::make_shared<App>(registry);
  EventLoops loops;
  Listening backend;
  Listening provider;
  Listening console;
};

Result<std::unique_ptr<Server>> Server::open(ServerOptions options) {
  try {
    // Before anything of the store is touched.
    for (const auto port : {options.backendPort, options.providerPort, options.consolePort}) {
      options.listening.port = port;
      HttpListener::probe(options.listening);
    }
    auto parts = std::make_unique<Parts>(options);
    parts->listen(options.listening);
    parts->maintain();
    return std::unique_ptr<Server>(new Server(std::move(parts)));
  } catch (const std::runtime_error& failure) {
    return Result<std::unique_ptr<Server>>::failure(failure.what());
  }
}

Server::Server(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

Server::~Server() = default;

const std::string& Server::backendURL() const { return parts_->backend.url; }
const std::string& Server::providerURL() const { return parts_->provider.url; }
const std::string& Server::consoleURL() const { return parts_->console.url; }

void Server::completeFinishedOperations() { parts_->app->completeFinishedOperations(); }

}  // namespace hlv::server
