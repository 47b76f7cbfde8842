#include "Tools/ServeCommand.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <thread>

#include "Platform/Default/DefaultPlatform.h"
#include "Services/Console/Console.h"
#include "Services/Services.h"
#include "Tools/CommandLine.h"
#include "Tools/Problem.h"

namespace hlv::tool {
namespace {

struct ServeOptions {
  services::ServicesOptions services;
  int consolePort = 0;
  std::string portsFile;
  std::int64_t answerMilliseconds = 30'000;
};

/// Waits for the signals that end a service. They are blocked for every thread that starts while
/// this lives, and come to this one's instead.
class EndingSignals {
 public:
  EndingSignals() {
    ::sigemptyset(&signals_);
    for (const int signal : {SIGINT, SIGTERM}) ::sigaddset(&signals_, signal);
    ::pthread_sigmask(SIG_BLOCK, &signals_, &before_);
  }
  ~EndingSignals() {
    if (thread_.joinable()) {
      if (!hasCome_) ::kill(::getpid(), SIGTERM);
      thread_.join();
    }
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

  /// Pumps the main queue until one comes, and calls `look` after each turn of it.
  void await(const std::function<void()>& look) {
    thread_ = std::thread([this] {
      int signal = 0;
      ::sigwait(&signals_, &signal);
      hasCome_ = true;
      DefaultPlatform::shared()->mainQueue()->async([] {});
    });
    DefaultPlatform::shared()->runUntil([&] {
      look();
      return hasCome_.load();
    });
  }

 private:
  sigset_t signals_{};
  sigset_t before_{};
  std::atomic<bool> hasCome_{false};
  std::thread thread_;
};

/// Whoever reads the file finds all of it, or nothing.
void writePorts(const std::string& file, const nlohmann::ordered_json& urls) {
  const auto whole = file + ".new";
  std::ofstream stream(whole, std::ios::trunc);
  stream << urls.dump(2) << "\n";
  stream.close();
  if (!stream || std::rename(whole.c_str(), file.c_str()) != 0) {
    std::remove(whole.c_str());
    throw Problem("The ports file cannot be written.");
  }
}

Report serve(Session& session, const ServeOptions& options) {
  session.requireOwnServices("serve");
  EndingSignals signals;
  auto servicesOptions = options.services;
  auto& listening = servicesOptions.listening;
  listening.limits.answerTime = std::chrono::milliseconds(options.answerMilliseconds);
  session.begin("serve");
  auto opened = services::Services::open(session.sharedSandbox(), servicesOptions);
  if (!opened.services) throw Problem(opened.problem);
  auto console = services::Console::open(session.sharedSandbox(), listening, options.consolePort);
  if (!console.console) throw Problem(console.problem);
  const nlohmann::ordered_json urls = {{"backend", opened.services->backendURL()},
                                       {"provider", opened.services->providerURL()},
                                       {"console", console.console->url()}};
  const auto portsFile =
      options.portsFile.empty() ? session.storePath() + ".ports.json" : options.portsFile;
  writePorts(portsFile, urls);
  std::cerr << "backend   " << opened.services->backendURL() << "\n"
            << "provider  " << opened.services->providerURL() << "\n"
            << "console   " << console.console->url() << std::endl;
  signals.await([&] { console.console->look(); });
  console.console.reset();
  opened.services.reset();
  std::remove(portsFile.c_str());

  auto report = session.report("serve");
  report.sentence = "The services have ended.";
  report.listing = [](const Terminal&) { return std::string(); };
  report.details["urls"] = urls;
  return report;
}

}  // namespace

void ServeCommand::define(CommandLine& line) {
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
  addPort("--backend-port", options->services.backendPort, "backend");
  addPort("--provider-port", options->services.providerPort, "provider");
  addPort("--console-port", options->consolePort, "console");
  command
      .add_option("--ports-file", options->portsFile,
                  "Where the URLs are while the services run (the store's path and .ports.json)")
      ->type_name("FILE");
  command
      .add_option("--address", options->services.listening.address, "Where to listen (127.0.0.1)")
      ->type_name("ADDRESS");
  command.add_flag("--listen-beyond-this-machine", options->services.listening.beyondThisMachine,
                   "Allow an address that other machines can reach");
  command
      .add_option("--answer-limit", options->answerMilliseconds,
                  "How long a request waits for its answer (30000)")
      ->type_name("MS")
      ->check(CLI::Range(std::int64_t{1}, std::int64_t{86'400'000}));
  line.whenChosen(command, [options](Session& session) { return serve(session, *options); });
}

}  // namespace hlv::tool
