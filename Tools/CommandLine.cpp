#include "Tools/CommandLine.h"

#include <arpa/inet.h>

#include <algorithm>
#include <iostream>
#include <string_view>

#include "Public/HLVSDKPaylevenKitVersion.h"
#include "Sandbox/Logging/MaskedText.h"
#include "Tools/CardCommands.h"
#include "Tools/Demo.h"
#include "Tools/Enabling.h"
#include "Tools/GuestCommands.h"
#include "Tools/Problem.h"
#include "Tools/SandboxCommands.h"
#include "Tools/ServeCommand.h"
#include "Tools/TesterCommands.h"

namespace hlv::tool {
namespace {

/// The number behind the last hyphen of the kit's version text.
std::string version() {
  const std::string text(reinterpret_cast<const char*>(HLVSDKPaylevenKitVersionString));
  const auto number = text.substr(text.rfind('-') + 1);
  return "paylevenkit " + number.substr(0, number.find('\n'));
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool hasLetter(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char character) {
    const char small = static_cast<char>(character | 0x20);
    return small >= 'a' && small <= 'z';
  });
}

/// Dates may stand in one.
bool isPath(std::string_view argument) {
  if (argument.starts_with("--")) argument.remove_prefix(argument.find('=') + 1);
  return argument.find('/') != std::string_view::npos && hasLetter(argument);
}

/// With three digits in each of its parts, one has twelve.
bool isAddress(const char* argument) {
  in_addr address{};
  return ::inet_pton(AF_INET, argument, &address) == 1;
}

bool isOptionName(const std::string& argument) {
  return argument.size() > 2 && argument.starts_with("--") &&
         std::none_of(argument.begin(), argument.end(), isDigit);
}

}  // namespace

CommandLine::CommandLine()
    : app_("Keeps a guest's payment cards with a payment provider, in a sandbox on this machine.",
           "paylevenkit") {
  app_.fallthrough();
  app_.require_subcommand(1);
  app_.set_version_flag("--version", version());
  app_.add_option("--store", options_.storePath,
                  "The store to work on (default: paylevenkit/store.sqlite in the data folder)")
      ->type_name("FILE")
      ->take_last()
      ->check([](const std::string& path) { return path.empty() ? "A store has a name" : ""; });
  app_.add_flag("--json", options_.json, "Print one JSON document");
  app_.add_option("--seed", options_.seed, "Make the identifiers of a new store repeatable")
      ->type_name("N");
  app_.add_option(
          "--enabling", options_.enabling,
          "How the kit is enabled: normal, or wrongly by no-entry, wrong-class, no-key, none")
      ->type_name("WAY")
      ->check(CLI::IsMember(Enabling::ways()));
  app_.add_flag("--console-log", options_.logToConsole, "Show the kit's log on standard error");
  auto* backend =
      app_.add_option("--backend", options_.backendURL, "The backend of a `paylevenkit serve`")
          ->type_name("URL");
  auto* provider =
      app_.add_option("--provider", options_.providerURL, "The provider of a `paylevenkit serve`")
          ->type_name("URL");
  backend->needs(provider);
  app_.footer(
      "These options may stand before or after the command.\n\n"
      "Examples:\n"
      "  paylevenkit demo\n"
      "  paylevenkit sign-in guest@example.com\n"
      "  paylevenkit add --test-card visa\n"
      "  paylevenkit cards --json");
  GuestCommands::define(*this);
  CardCommands::define(*this);
  TesterCommands::define(*this);
  ServeCommand::define(*this);
  defineSandboxCommands(*this);
  Demo::define(*this);
}

CLI::App& CommandLine::add(CLI::App& parent, const std::string& name,
                           const std::string& description, const std::string& examples) {
  auto* command = parent.add_subcommand(name, description);
  command->footer("Examples:\n" + examples +
                  "\nOptions for every command: see paylevenkit --help.");
  return *command;
}

void CommandLine::whenChosen(CLI::App& command, std::function<Report(Session&)> act) {
  whenChosenWithoutStore(command,
                         [act = std::move(act)](const GlobalOptions& options, const Printer&) {
                           Session session(options);
                           return act(session);
                         });
}

void CommandLine::whenChosenWithoutStore(CLI::App& command, Action act) {
  // The callback of an inner command comes before that of the command around it.
  command.callback([this, act = std::move(act)] {
    if (!chosen_) chosen_ = act;
  });
}

int CommandLine::run(int argc, const char* const* argv) {
  // What cannot be parsed is reported in the form that was asked for.
  const bool json = std::any_of(argv, argv + argc,
                                [](std::string_view argument) { return argument == "--json"; });
  const Printer printer(json);
  try {
    if (const auto sentence = refusal(argc, argv); !sentence.empty()) throw Problem(sentence);
    app_.parse(argc, argv);
    const auto report = chosen_(options_, printer);
    printer.print(report);
    return report.exitStatus();
  } catch (const CLI::CallForHelp&) {
    std::cout << app_.help();
    return 0;
  } catch (const CLI::CallForVersion& asked) {
    std::cout << asked.what() << "\n";
    return 0;
  } catch (const CLI::ParseError& error) {
    printer.printProblem(explained(error));
  } catch (const std::exception& problem) {
    printer.printProblem(problem.what());
  }
  return 2;
}

std::string CommandLine::refusal(int argc, const char* const* argv) const {
  // A number may have been split at its spaces.
  std::string arguments;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument(argv[i]);
    if (isPath(argument) || isAddress(argv[i])) continue;
    // What has a letter is no part of a number, and a colon ends one.
    arguments += hasLetter(argument) ? ":" : " ";
    arguments += argument;
  }
  if (!sandbox::holdsCardNumber(arguments)) return {};
  return "An argument looks like a card number; a number is typed when asked for, or comes from "
         "standard input.";
}

std::string CommandLine::explained(const CLI::ParseError& error) const {
  std::string command = "paylevenkit ";
  for (auto chosen = app_.get_subcommands(); !chosen.empty();
       chosen = chosen.front()->get_subcommands()) {
    command.append(chosen.front()->get_name()).append(" ");
  }
  const auto help = "; see `" + command + "--help`.";
  const bool namesNone = app_.get_subcommands().empty();
  if (namesNone && dynamic_cast<const CLI::RequiredError*>(&error)) {
    return "A command is needed" + help;
  }
  if (!dynamic_cast<const CLI::ExtrasError*>(&error)) return error.what() + help;
  // What was typed by mistake may be secret, so only the name of an option is repeated.
  for (const auto& argument : app_.remaining(true)) {
    const auto name = argument.substr(0, argument.find('='));
    if (isOptionName(name)) {
      return std::string("The option ").append(name).append(" is not known").append(help);
    }
  }
  return "An argument is not known here" + help;
}

}  // namespace hlv::tool
