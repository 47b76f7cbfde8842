#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "Platform/Default/DefaultPlatform.h"
#include "Server/Server.h"
#include "Tools/CommandLine.h"
#include "Values/Problem.h"

namespace hlv::sandbox::tool {
namespace {

struct ServeOptions {
  server::ServerOptions server;
  std::string portsFile;
  std::int64_t answerMilliseconds = 30'000;
};

/// Takes the signals that end a service, for as long as it lives.
class EndingSignals {
 public:
  EndingSignals() {
    signals_.async_wait([this](const boost::system::error_code& stopped, int) {
      if (stopped) return;
      hasCome_ = true;
      DefaultPlatform::shared()->mainQueue()->async([] {});
    });
    thread_ = std::thread([this] { loop_.run(); });
  }
  ~EndingSignals() {
    loop_.stop();
    thread_.join();
  }
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

  /// Pumps the main queue until one comes, and calls `afterEachPass`.
  void await(const std::function<void()>& afterEachPass) const {
    DefaultPlatform::shared()->runUntil([&] {
      afterEachPass();
      return hasCome_.load();
    });
  }

 private:
  boost::asio::io_context loop_;
  boost::asio::signal_set signals_{loop_, SIGINT, SIGTERM};
  std::atomic<bool> hasCome_{false};
  std::thread thread_;
};

/// Where the URLs stand while the services run. Whoever reads the file finds all of it, or nothing.
/// Only whoever has the store's lock makes and removes one.
class PortsFile {
 public:
  /// Throws Problem when none can be written there, before there is anything to write.
  static void requireWritable(const std::string& path) {
    const auto folder = std::filesystem::path(path).parent_path();
    if (::access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0) throw unwritable();
  }

  PortsFile(std::string path, const Json& urls) : path_(std::move(path)) {
    const auto unfinished = path_ + ".new";
    std::ofstream stream(unfinished, std::ios::trunc);
    stream << urls.dump(2) << "\n";
    stream.close();
    if (stream && std::rename(unfinished.c_str(), path_.c_str()) == 0) return;
    std::remove(unfinished.c_str());
    throw unwritable();
  }
  ~PortsFile() { std::remove(path_.c_str()); }
  PortsFile(const PortsFile&) = delete;
  PortsFile& operator=(const PortsFile&) = delete;

 private:
  static Problem unwritable() { return Problem("The ports file cannot be written."); }

  const std::string path_;
};

/// Connections take descriptors, and a shell's limit is far below what the system allows.
void allowAllDescriptors() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &limit);
}

Report serve(Session& session, const ServeOptions& options) {
  session.requireOwnServices("serve");
  EndingSignals signals;
  allowAllDescriptors();
  auto serverOptions = options.server;
  serverOptions.storePath = session.storePath();
  serverOptions.listening.limits.answerTime = std::chrono::milliseconds(options.answerMilliseconds);
  const auto portsPath =
      options.portsFile.empty() ? session.storePath() + ".ports.json" : options.portsFile;
  PortsFile::requireWritable(portsPath);
  auto server = server::Server::open(serverOptions).value();
  const Json urls = {{"backend", server->backendURL()},
                     {"provider", server->providerURL()},
                     {"console", server->consoleURL()}};
  std::optional<PortsFile> ports(std::in_place, portsPath, urls);
  for (const auto& [name, url] : urls.items()) {
    std::cerr << std::left << std::setw(10) << name << url.get<std::string>() << std::endl;
  }
  signals.await([&] { server->completeFinishedOperations(); });
  // The file first, which is the next server's as soon as the store is.
  ports.reset();
  server.reset();

  auto report = session.report("serve");
  report.sentence = "The services have ended.";
  report.showNoSides();
  report.details["urls"] = urls;
  return report;
}

}  // namespace

void defineServeCommand(CommandLine& line) {
  auto& command =
      CommandLine::add(line.app(), "serve",
                       "Offer the backend and the provider over HTTP, and a console to see them",
                       "  paylevenkit serve\n"
                       "  paylevenkit serve --backend-port 8081 --provider-port 8082 "
                       "--console-port 8080\n"
                       "  paylevenkit serve --ports-file ports.json\n");
  const auto options = std::make_shared<ServeOptions>();
  const auto addPort = [&command](const std::string& name, int& port, const std::string& whose) {
    command
        .add_option(name, port, "The port of the " + whose + " (0: the last one, or any free one)")
        ->type_name("N")
        ->check(CLI::Range(0, 65535));
  };
  addPort("--backend-port", options->server.backendPort, "backend");
  addPort("--provider-port", options->server.providerPort, "provider");
  addPort("--console-port", options->server.consolePort, "console");
  command
      .add_option("--ports-file", options->portsFile,
                  "Where the URLs are while the services run (the store's path and .ports.json)")
      ->type_name("FILE");
  command.add_option("--address", options->server.listening.address, "Where to listen (127.0.0.1)")
      ->type_name("ADDRESS");
  command.add_flag("--listen-beyond-this-machine", options->server.listening.beyondThisMachine,
                   "Allow an address that other machines can reach");
  command
      .add_option("--allow-host", options->server.listening.allowedHosts,
                  "A name that clients may call the services by; may be repeated")
      ->type_name("NAME");
  command
      .add_option("--loops", options->server.loops, "How many event loops (0: one for each core)")
      ->type_name("N")
      ->check(CLI::Range(0, 64));
  const auto addURL = [&command](const std::string& name, std::string& url,
                                 const std::string& whose) {
    command.add_option(name, url, "Where clients reach the " + whose + ", if not where it listens")
        ->type_name("URL");
  };
  addURL("--backend-url", options->server.backendURL, "backend");
  addURL("--provider-url", options->server.providerURL, "provider");
  addURL("--console-url", options->server.consoleURL, "console");
  command
      .add_option("--answer-limit", options->answerMilliseconds,
                  "How long a request waits for its answer (30000)")
      ->type_name("MS")
      ->check(CLI::Range(std::int64_t{1}, std::int64_t{86'400'000}));
  line.whenChosen(command, [options](Session& session) { return serve(session, *options); });
}

}  // namespace hlv::sandbox::tool
