#include "Server/Server.h"

#include <algorithm>
#include <cstdint>
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

namespace hlv::sandbox::server {
namespace {

constexpr std::chrono::milliseconds maintenancePeriod{200};

/// One of the three listeners.
struct Listening {
  std::string name;
  ApiHandler handler;
  int wantedPort;
  std::string url;
  std::unique_ptr<HttpListener> listener = {};
};

std::string noteOf(const Listening& each) { return "port of the " + each.name; }

}  // namespace

struct Server::Parts {
  explicit Parts(const ServerOptions& options)
      : registry(options.storePath, options.seed, writers),
        loops(options.loops == 0 ? cores : options.loops),
        backend{"backend", {"backend", registry, false}, options.backendPort, options.backendURL},
        provider{
            "provider", {"provider", registry, true}, options.providerPort, options.providerURL},
        console{"console", {"console", registry, false}, options.consolePort, options.consoleURL} {
    addBackendRoutes(backend.handler.routes());
    addProviderRoutes(provider.handler.routes());
    addConsoleRoutes(console.handler.routes(), registry, app);
    for (auto* each : {&provider, &console}) {
      addControlRoutes(each->handler.routes(), registry);
      auto& common = each->handler.commonRoutes();
      addSandboxRoutes(common, registry);
      addDocument(common, "v1/sandbox/openapi.json", "control");
      addDocument(common, "v1/sandboxes/openapi.json", "sandboxes");
    }
    addDocument(backend.handler.commonRoutes(), "openapi.json", "backend");
    addDocument(provider.handler.commonRoutes(), "openapi.json", "provider");
  }

  ~Parts() {
    for (auto* each : {&backend, &provider, &console}) each->listener.reset();
    loops.stop();
    writers->join();
  }

  /// Throws `Problem`.
  void listen(const ListenOptions& listening) {
    for (auto* each : {&backend, &provider, &console}) listenAgain(*each, listening);
    for (auto* each : {&backend, &provider, &console}) {
      const auto port = std::to_string(each->listener->port());
      if (registry.note(noteOf(*each)) != port) registry.setNote(noteOf(*each), port);
      if (each->url.empty()) each->url = "http://" + listening.address + ":" + port;
    }
    registry.setURLs({backend.url, provider.url, console.url});
  }

  /// At the port of the store's last server, so that whoever kept its URL finds it again.
  void listenAgain(Listening& wanted, ListenOptions listening) {
    const auto listen = [&](int port) {
      listening.port = port;
      wanted.listener = std::make_unique<HttpListener>(loops, listening, wanted.handler);
    };
    if (wanted.wantedPort != 0) return listen(wanted.wantedPort);
    try {
      const auto last = numberOf(registry.note(noteOf(wanted)).value_or("")).value_or(0);
      listen(std::in_range<std::uint16_t>(last) ? static_cast<int>(last) : 0);
    } catch (const Problem&) {
      listen(0);  // Another program has it now.
    }
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

}  // namespace hlv::sandbox::server
