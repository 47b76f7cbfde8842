// The command's arguments: which command, with which options.
//
// Threading: the main thread.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <string>

#include "Tools/Output/Report.h"
#include "Tools/Session.h"

namespace hlv::sandbox::tool {

class CommandLine {
 public:
  CommandLine();
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  /// Runs what the arguments ask for and returns the exit status.
  int run(int argc, const char* const* argv);

  // For the command groups.

  CLI::App& app() { return app_; }
  /// Adds a command with a paragraph of examples.
  static CLI::App& add(CLI::App& parent, const std::string& name, const std::string& description,
                       const std::string& examples);
  /// What `command` does, with the store open.
  void whenChosen(CLI::App& command, std::function<Report(Session&)> act);
  /// Runs `act` with the store open. When it throws, nothing has changed: a store that was made for
  /// it is removed again.
  static Report inSession(const GlobalOptions& options, const std::function<Report(Session&)>& act);
  /// The same for a command that deals with the store's files itself.
  void whenChosenWithoutStore(CLI::App& command,
                              std::function<Report(const GlobalOptions&, const Printer&)> act);

 private:
  using Action = std::function<Report(const GlobalOptions&, const Printer&)>;

  std::string refusal(int argc, const char* const* argv) const;
  std::string explained(const CLI::ParseError& error) const;

  CLI::App app_;
  GlobalOptions options_;
  Action chosen_;
};

// The groups of commands; each adds its own to the command line.

/// What a guest and an app do: sign-in, sign-out, network, foreground, sync.
void defineGuestCommands(CommandLine& line);
/// What is done with a guest's cards: add, update, delete, cards, instruments.
void defineCardCommands(CommandLine& line);
/// What a tester does: orphan, scenario, fault, trace, reset.
void defineTesterCommands(CommandLine& line);
/// serve: the sandbox's services for other processes.
void defineServeCommand(CommandLine& line);
/// The sandboxes of a server elsewhere.
void defineSandboxCommands(CommandLine& line);
/// demo: the life of a guest's cards, from the first sign-in to two sides that agree.
void defineDemoCommand(CommandLine& line);
/// What describes the command: manual and completion.
void defineDocumentCommands(CommandLine& line);

}  // namespace hlv::sandbox::tool
