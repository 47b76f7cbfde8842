#include "Tools/CommandLine.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <iostream>
#include <numeric>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Masking/MaskedText.h"
#include "Tools/StoreFiles.h"
#include "Values/Names.h"
#include "Values/Problem.h"

namespace hlv::sandbox::tool {
namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isLetter(char character) { return std::isalpha(static_cast<unsigned char>(character)) != 0; }

bool hasLetter(std::string_view text) { return std::any_of(text.begin(), text.end(), isLetter); }

/// Dates may stand in one.
bool isPath(std::string_view argument) {
  if (argument.starts_with("--")) argument.remove_prefix(argument.find('=') + 1);
  return argument.find('/') != std::string_view::npos && hasLetter(argument);
}

/// Whether digits of any script, with nothing but blanks, dashes, dots and slashes between them,
/// make a number that a card may have: by its length, its brand and its checksum. Other long
/// numbers, such as times, are none.
bool holdsValidCardNumber(std::string_view text) {
  constexpr std::size_t longest = 19;
  const auto plain = plainNumbers(text) + ":";
  for (std::size_t begin = 0; begin + 1 < plain.size(); ++begin) {
    // A number is whole groups of digits.
    if (begin > 0 && isDigit(plain[begin - 1])) continue;
    std::string digits;
    for (auto at = begin; plain[at] != ':' && digits.size() <= longest; ++at) {
      if (isDigit(plain[at])) digits += plain[at];
      if (!isDigit(plain[at + 1]) && isCardNumber(digits)) return true;
    }
  }
  return false;
}

bool isOptionName(const std::string& argument) {
  return argument.size() > 2 && argument.starts_with("--") &&
         std::none_of(argument.begin(), argument.end(), isDigit);
}

/// Whether a mistyped command may be repeated: it holds no number and no code.
bool isCommandName(const std::string& argument) {
  constexpr std::size_t longest = 24;
  return hasLetter(argument) && argument.size() <= longest &&
         std::all_of(argument.begin(), argument.end(),
                     [](char character) { return character == '-' || isLetter(character); });
}

/// How many letters have to be inserted, removed or replaced to make one of the other.
std::size_t distance(std::string_view one, std::string_view other) {
  std::vector<std::size_t> row(other.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= one.size(); ++i) {
    auto diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= other.size(); ++j) {
      const auto replaced = diagonal + (one[i - 1] == other[j - 1] ? 0 : 1);
      diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, replaced}));
    }
  }
  return row.back();
}

/// The command of that name that was meant, or an empty string.
std::string nearest(const std::string& typed, const CLI::App& parent) {
  std::string best;
  std::size_t fewest = 3;
  for (const auto* command : parent.get_subcommands([](const CLI::App*) { return true; })) {
    const auto& name = command->get_name();
    const auto changes = name.starts_with(typed) ? 1 : distance(typed, name);
    if (changes < fewest) {
      fewest = changes;
      best = name;
    }
  }
  return best;
}

/// Numbers from zero on. A sign would be taken for a very large one, and what is too large for the
/// largest there is.
std::string problemOfNumber(const std::string& text) {
  std::uint64_t number = 0;
  const auto* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end ? "" : "A whole number from 0 on is needed";
}

constexpr Names<Enabling, 5> enablings{{{Enabling::normal, "normal"},
                                        {Enabling::noEntry, "no-entry"},
                                        {Enabling::wrongClass, "wrong-class"},
                                        {Enabling::noKey, "no-key"},
                                        {Enabling::none, "none"}}};

std::vector<std::string> enablingNames() {
  std::vector<std::string> names;
  for (const auto& row : enablings.rows) names.emplace_back(row.second);
  return names;
}

/// The status of a command whose output has been written, or 1 when it could not be.
int written(int status) {
  if (std::cout.flush()) return status;
  std::cerr << "paylevenkit: The output cannot be written." << std::endl;
  return 1;
}

}  // namespace

CommandLine::CommandLine()
    : app_("Keeps a guest's payment cards with a payment provider, in a sandbox on this machine.",
           "paylevenkit") {
  app_.fallthrough();
  app_.require_subcommand(1);
  app_.set_version_flag("--version", "paylevenkit " PAYLEVENKIT_VERSION);
  app_.add_option("--store", options_.storePath,
                  "The store to work on (default: paylevenkit/store.sqlite in the data folder)")
      ->type_name("FILE")
      ->take_last()
      ->check([](const std::string& path) { return path.empty() ? "A store has a name" : ""; });
  app_.add_flag("--json", options_.json, "Print one JSON document");
  app_.add_option("--seed", options_.seed, "Make the identifiers of a new store repeatable")
      ->type_name("N")
      ->check(problemOfNumber);
  app_.add_option_function<std::string>(
          "--enabling",
          [this](const std::string& name) {
            options_.enabling = enablings.find(name).value_or(options_.enabling);
          },
          "How the kit is enabled: normal, or wrongly by no-entry, wrong-class, no-key, none")
      ->type_name("WAY")
      ->check(CLI::IsMember(enablingNames()));
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
  defineGuestCommands(*this);
  defineCardCommands(*this);
  defineTesterCommands(*this);
  defineServeCommand(*this);
  defineSandboxCommands(*this);
  defineDemoCommand(*this);
  defineDocumentCommands(*this);
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
                           return inSession(options, act);
                         });
}

Report CommandLine::inSession(const GlobalOptions& options,
                              const std::function<Report(Session&)>& act) {
  std::optional<NewStore> made;
  if (!options.isInMemory) made.emplace(storePathOrDefault(options.storePath));
  try {
    Session session(options);
    return session.attempt([&] { return act(session); });
  } catch (...) {
    if (made) made->remove();
    throw;
  }
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
    return written(report.exitStatus());
  } catch (const CLI::CallForHelp&) {
    std::cout << app_.help();
    return written(0);
  } catch (const CLI::CallForVersion& asked) {
    std::cout << asked.what() << "\n";
    return written(0);
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
    if (isPath(argument)) continue;
    // What has a letter is no part of a number, and a colon ends one.
    arguments += hasLetter(argument) ? ":" : " ";
    arguments += argument;
  }
  if (!holdsValidCardNumber(arguments)) return {};
  return "An argument looks like a card number; a number is typed when asked for, or comes from "
         "standard input.";
}

std::string CommandLine::explained(const CLI::ParseError& error) const {
  std::string command = "paylevenkit ";
  const auto* innermost = &app_;
  for (auto chosen = app_.get_subcommands(); !chosen.empty();
       chosen = chosen.front()->get_subcommands()) {
    innermost = chosen.front();
    command.append(innermost->get_name()).append(" ");
  }
  const auto help = "; see `" + command + "--help`.";
  const auto unknown = app_.remaining(true);
  const bool needsCommand =
      !innermost->get_subcommands([](const CLI::App*) { return true; }).empty();
  if (needsCommand && !unknown.empty() && isCommandName(unknown.front())) {
    const auto meant = nearest(unknown.front(), *innermost);
    return "The command '" + unknown.front() + "' is not known" +
           (meant.empty()
                ? help
                : "; did you mean `" + command + meant + "`? See `" + command + "--help`.");
  }
  if (needsCommand && dynamic_cast<const CLI::RequiredError*>(&error)) {
    return "A command is needed" + help;
  }
  if (!dynamic_cast<const CLI::ExtrasError*>(&error)) {
    return maskedText(error.what()) + help;
  }
  // What was typed by mistake may be secret, so only the name of an option is repeated.
  for (const auto& argument : unknown) {
    const auto name = argument.substr(0, argument.find('='));
    if (isOptionName(name)) {
      return std::string("The option ").append(name).append(" is not known").append(help);
    }
  }
  return "An argument is not known here" + help;
}

}  // namespace hlv::sandbox::tool
