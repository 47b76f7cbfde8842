#include <memory>
#include <string>
#include <vector>

#include "Client/Sandboxes.h"
#include "Sandbox/JSON/SandboxRecords.h"
#include "Tools/CommandLine.h"
#include "Tools/Output/Table.h"
#include "Values/Problem.h"

namespace hlv::sandbox::tool {
namespace {

using client::SandboxClient;
using client::SandboxDescription;

SandboxClient connect(const GlobalOptions& options) {
  if (options.providerURL.empty()) {
    throw Problem("Say --provider URL, the provider of a running `paylevenkit serve`.");
  }
  return SandboxClient(options.providerURL);
}

/// One sentence, and in JSON what is new.
Report done(const std::string& operation, const std::string& sentence, Json details = {}) {
  Report report;
  report.operation = "sandbox " + operation;
  report.sentence = sentence;
  report.showNoSides();
  if (!details.is_null()) report.details = std::move(details);
  return report;
}

Report shown(const std::string& operation, const std::string& sentence,
             const SandboxDescription& sandbox) {
  auto report = done(operation, sentence, {{"sandbox", jsonOf(sandbox)}});
  Table table;
  table.add({"id", sandbox.id});
  if (sandbox.seed) table.add({"seed", std::to_string(*sandbox.seed)});
  table.add({"clock", sandbox.clock});
  table.add({"network", sandbox.isNetworkOn ? "on" : "off"});
  table.add({"kept", sandbox.isInMemory ? "in memory" : "on disk"});
  table.add({"created", sandbox.created});
  if (sandbox.expires) table.add({"expires", *sandbox.expires});
  table.add({"guests", std::to_string(sandbox.guests)});
  table.add({"backend", sandbox.backendURL});
  table.add({"provider", sandbox.providerURL});
  table.add({"control", sandbox.controlURL});
  table.add({"console", sandbox.consoleURL});
  report.list(std::move(table), "");
  return report;
}

Report listed(const SandboxClient& client) {
  Table table;
  const auto sandboxes = client.list();
  for (const auto& sandbox : sandboxes) {
    table.add({sandbox.id, sandbox.created, sandbox.expires.value_or("for good"),
               sandbox.problem.value_or(std::to_string(sandbox.guests) +
                                        (sandbox.guests == 1 ? " guest" : " guests")),
               sandbox.providerURL});
  }
  auto report = done("list", "", {{"sandboxes", listOf(sandboxes)}});
  report.list(std::move(table), "There is no sandbox.");
  return report;
}

class Definition {
 public:
  explicit Definition(CommandLine& line)
      : line_(line),
        sandbox_(CommandLine::add(line.app(), "sandbox",
                                  "Create sandboxes of a server, or list them",
                                  "  paylevenkit sandbox create --provider http://127.0.0.1:8082\n"
                                  "  paylevenkit sandbox list --provider URL\n"
                                  "  paylevenkit sandbox delete ID --provider URL\n")) {
    sandbox_.require_subcommand(1);
  }

  void addAll() {
    addCreate();
    addSimple("list", "List the sandboxes", "", &listed);
    addOfOne("show", "Show a sandbox and its URLs", [](const auto& client, const auto& id) {
      return shown("show", "", client.describe(id));
    });
    addOfOne("delete", "Delete a sandbox", [](const auto& client, const auto& id) {
      client.remove(id);
      return done("delete", "The sandbox is deleted: " + id + ".");
    });
    addOfOne("reset", "Forget everything in a sandbox", [](const auto& client, const auto& id) {
      return done("reset", "The sandbox is empty: " + id + ".",
                  {{"sandbox", jsonOf(client.reset(id))}});
    });
    addOfOne("snapshot", "Keep a sandbox as it is now", [](const auto& client, const auto& id) {
      const auto snapshot = client.snapshot(id);
      return done("snapshot", "The snapshot is made: " + snapshot.id + ".", jsonOf(snapshot));
    });
    addRestore();
    addClock();
  }

 private:
  using Act = std::function<Report(const SandboxClient&)>;
  using ActOnOne = std::function<Report(const SandboxClient&, const std::string&)>;

  CLI::App& addSimple(const std::string& name, const std::string& description,
                      const std::string& arguments, Act act) {
    auto& command =
        CommandLine::add(sandbox_, name, description,
                         "  paylevenkit sandbox " + name + arguments + " --provider URL\n");
    line_.whenChosenWithoutStore(
        command, [act = std::move(act)](const GlobalOptions& options, const Printer&) {
          return act(connect(options));
        });
    return command;
  }

  /// Without an id it is the sandbox that the URL names.
  CLI::App& addOfOne(const std::string& name, const std::string& description, ActOnOne act,
                     const std::string& arguments = " ID") {
    const auto id = std::make_shared<std::string>();
    auto& command = addSimple(name, description, arguments,
                              [id, act = std::move(act)](const SandboxClient& client) {
                                return act(client, id->empty() ? client.id() : *id);
                              });
    command.add_option("ID", *id, "Which one (the one of the URL)");
    return command;
  }

  void addCreate() {
    const auto options = std::make_shared<client::NewSandbox>();
    auto& command =
        CommandLine::add(sandbox_, "create", "Create a sandbox",
                         "  paylevenkit sandbox create --provider URL\n"
                         "  paylevenkit sandbox create --id mine --seed 7 --ttl 3600 --in-memory "
                         "--provider URL\n"
                         "  paylevenkit sandbox create --snapshot SNAPSHOT --provider URL\n");
    command.add_option("--id", options->id, "Its id (random)");
    command.add_option("--clock", options->clock, "Its time, in ISO 8601 (now)")->type_name("TIME");
    command.add_option("--snapshot", options->snapshot, "The snapshot that it starts from");
    command.add_option("--ttl", options->secondsToLive, "When it is deleted (never)")
        ->type_name("SECONDS");
    command.add_flag("--in-memory", options->isInMemory, "Keep it in memory only");
    line_.whenChosenWithoutStore(command, [options](const GlobalOptions& global, const Printer&) {
      options->seed = global.seed;
      const auto sandbox = connect(global).create(*options);
      return shown("create", "The sandbox is created: " + sandbox.id + ".", sandbox);
    });
  }

  void addRestore() {
    const auto snapshot = std::make_shared<std::string>();
    auto& command = addOfOne(
        "restore", "Bring a sandbox back to a snapshot",
        [snapshot](const SandboxClient& client, const std::string& id) {
          return done("restore", "The sandbox is as it was: " + id + ".",
                      {{"sandbox", jsonOf(client.restore(id, *snapshot))}});
        },
        " ID --snapshot SNAPSHOT");
    command.add_option("--snapshot", *snapshot, "Which one")->required();
  }

  void addClock() {
    struct Options {
      std::string time;
      std::int64_t seconds = 0;
    };
    const auto options = std::make_shared<Options>();
    auto& command = addOfOne(
        "clock", "Show the time of a sandbox, or move it forwards",
        [options](const SandboxClient& client, const std::string& id) {
          auto now = !options->time.empty()  ? client.setClock(id, options->time)
                     : options->seconds != 0 ? client.advanceClock(id, options->seconds)
                                             : client.clock(id);
          return done("clock", "The time is " + now + ".", {{"clock", now}});
        },
        " ID --advance 86400");
    auto* time = command.add_option("--set", options->time, "To this time, in ISO 8601");
    time->type_name("TIME");
    command.add_option("--advance", options->seconds, "By this much")
        ->type_name("SECONDS")
        ->excludes(time);
  }

  CommandLine& line_;
  CLI::App& sandbox_;
};

}  // namespace

void defineSandboxCommands(CommandLine& line) { Definition(line).addAll(); }

}  // namespace hlv::sandbox::tool
