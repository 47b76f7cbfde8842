#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Sandbox/JSON/FaultRecords.h"
#include "Sandbox/JSON/JournalRecords.h"
#include "Tools/CardSource.h"
#include "Tools/CommandLine.h"
#include "Tools/Output/Table.h"
#include "Tools/Output/Timeline.h"
#include "Tools/Prompt.h"
#include "Tools/StoreFiles.h"
#include "Values/Names.h"
#include "Values/Problem.h"

namespace hlv::sandbox::tool {
namespace {

/// Something done that is no operation: one sentence is all there is to show.
Report said(Report report, const std::string& sentence) {
  report.sentence = sentence;
  report.showNoSides();
  return report;
}

void defineOrphan(CommandLine& line) {
  auto& command = CommandLine::add(
      line.app(), "orphan", "Store an instrument at the provider that the backend does not know",
      "  paylevenkit orphan --test-card mastercard\n");
  const auto source = std::make_shared<CardSource>();
  source->addOptions(command);
  line.whenChosen(command, [source](Session& session) {
    session.guest();
    const auto card = source->read();
    session.begin("orphan");
    return session.report(session.tester()->addOrphanInstrument(card),
                          "The provider holds an instrument that the backend does not know.");
  });
}

void defineScenario(CommandLine& line) {
  auto& command = CommandLine::add(line.app(), "scenario", "Bring the two sides apart",
                                   "  paylevenkit scenario half-deleted\n");
  const auto name = std::make_shared<std::string>();
  const auto possible = namesOf(allScenarios());
  command.add_option("NAME", *name, "One of " + joined(possible))
      ->required()
      ->type_name("SCENARIO")
      ->check(CLI::IsMember(possible));
  line.whenChosen(command, [name](Session& session) {
    session.guest();
    session.begin("scenario");
    session.tester()->makeScenario(scenarioNamed(*name).value()).value();
    return session.report(Report::Outcome::succeeded, "The scenario is made: " + *name + ".");
  });
}

std::string times(const Fault& fault) {
  if (!fault.remaining) return "every call";
  return std::to_string(*fault.remaining) + (*fault.remaining == 1 ? " call" : " calls");
}

template <class Named>
std::string text(Named value) {
  return std::string(textOf(value));
}

std::string spread(const Fault& fault) {
  const auto milliseconds = std::to_string(fault.spreadMilliseconds) + " ms";
  if (fault.distribution == Distribution::uniform) return "and up to " + milliseconds;
  return text(fault.distribution) + ", spread " + milliseconds;
}

Report armedFaults(Session& session) {
  Table table;
  const auto faults = session.tester()->armed();
  for (const auto& fault : faults) {
    std::string more;
    if (fault.kind == FaultKind::error) more += "code " + std::to_string(fault.code) + " ";
    if (fault.status) more += "status " + std::to_string(*fault.status) + " ";
    for (const auto& [name, value] : fault.headers) more += name + ": " + value + " ";
    if (fault.bytes) more += "after " + std::to_string(*fault.bytes) + " bytes ";
    if (fault.bytesPerSecond) more += std::to_string(*fault.bytesPerSecond) + " bytes a second ";
    if (fault.delayMilliseconds > 0) more += std::to_string(fault.delayMilliseconds) + " ms ";
    if (fault.spreadMilliseconds > 0) more += spread(fault) + " ";
    if (fault.probability < 100) more += std::to_string(fault.probability) + " in a hundred ";
    if (fault.useCase) more += "only " + *fault.useCase;
    table.add({std::to_string(fault.number), text(fault.operation), text(fault.kind), times(fault),
               more});
  }
  auto report = session.report("fault list");
  report.list(std::move(table), "No fault is armed.");
  report.details["faults"] = listOf(faults);
  return report;
}

Report faultFirings(Session& session) {
  Table table;
  const auto firings = session.tester()->firings();
  for (const auto& firing : firings) {
    table.add({std::to_string(firing.faultNumber), text(firing.operation), text(firing.kind)});
  }
  auto report = session.report("fault firings");
  report.list(std::move(table), "No fault has met a call.");
  report.details["firings"] = listOf(firings);
  return report;
}

/// A fault as it is typed.
struct TypedFault {
  Fault fault;
  std::string operation;
  std::string kind;
  std::string distribution{textOf(Distribution::uniform)};
  std::vector<std::string> headers;
  bool always = false;

  /// Throws Problem for what is none.
  Fault read() const {
    auto read = fault;
    read.operation = operationNamed(operation).value();
    read.kind = faultKindNamed(kind).value();
    read.distribution = distributionNamed(distribution).value();
    for (const auto& header : headers) {
      const auto colon = header.find(": ");
      if (colon == std::string::npos) throw Problem("A header reads \"NAME: VALUE\".");
      read.headers.emplace_back(header.substr(0, colon), header.substr(colon + 2));
    }
    if (always) read.remaining.reset();
    return read;
  }
};

void defineArm(CommandLine& line, CLI::App& parent) {
  auto& command = CommandLine::add(
      parent, "arm", "Let calls of an operation fail",
      "  paylevenkit fault arm createUserToken no-token\n"
      "  paylevenkit fault arm addCreditCardForGuest error --code 409\n"
      "  paylevenkit fault arm getPaymentInstrumentsList never "
      "--use-case business --always\n\n"
      "Operations: " +
          joined(namesOf(allOperations())) + "\nKinds: " + joined(namesOf(allFaultKinds())) + "\n");
  const auto typed = std::make_shared<TypedFault>();
  auto& fault = typed->fault;
  command.add_option("OPERATION", typed->operation, "The operation of a service")->required();
  command.add_option("KIND", typed->kind, "What happens to its calls")->required();
  auto* count = command.add_option("--times", fault.remaining, "How many calls it meets (1)");
  command.add_flag("--always", typed->always, "Meet every call")->excludes(count);
  command.add_option("--delay", fault.delayMilliseconds, "How long the reply waits")
      ->type_name("MS");
  command.add_option("--spread", fault.spreadMilliseconds, "How far the delays spread")
      ->type_name("MS");
  command.add_option("--distribution", typed->distribution, "How they spread (uniform)")
      ->check(CLI::IsMember({"uniform", "normal", "log-normal"}));
  command.add_option("--probability", fault.probability, "Of how many in a hundred calls it meets")
      ->type_name("PERCENT");
  command.add_option("--code", fault.code, "The code of an error (500)");
  command.add_option("--status", fault.status, "Over HTTP, the status of an error (by its code)");
  command.add_option("--header", typed->headers, "Over HTTP, a header of an error")
      ->type_name("\"NAME: VALUE\"")
      ->allow_extra_args(false);
  command.add_option("--bytes", fault.bytes, "Over HTTP, where a reply is cut")->type_name("N");
  command.add_option("--bytes-per-second", fault.bytesPerSecond, "Over HTTP, how slow a reply is")
      ->type_name("N");
  command.add_option("--use-case", fault.useCase, "Meet only calls for this use case");
  line.whenChosen(command, [typed](Session& session) {
    auto armed = typed->read();
    armed.number = session.tester()->arm(armed).value();
    auto report =
        said(session.report("fault arm"), "The fault is armed: " + text(armed.operation) + " " +
                                              text(armed.kind) + ", " + times(armed) + ".");
    report.details["fault"] = jsonOf(armed);
    return report;
  });
}

void defineFault(CommandLine& line) {
  auto& fault = CommandLine::add(line.app(), "fault", "Arm faults of the services, or list them",
                                 "  paylevenkit fault\n"
                                 "  paylevenkit fault arm removePaymentInstrument error\n"
                                 "  paylevenkit fault firings\n"
                                 "  paylevenkit fault clear\n");
  fault.require_subcommand(0, 1);
  line.whenChosen(fault, armedFaults);
  defineArm(line, fault);
  line.whenChosen(
      CommandLine::add(fault, "list", "List what is armed", "  paylevenkit fault list\n"),
      armedFaults);
  line.whenChosen(CommandLine::add(fault, "firings", "List the calls that met a fault",
                                   "  paylevenkit fault firings\n"),
                  faultFirings);
  line.whenChosen(
      CommandLine::add(fault, "clear", "Disarm everything", "  paylevenkit fault clear\n"),
      [](Session& session) {
        session.tester()->clearFaults();
        return said(session.report("fault clear"), "No fault is armed.");
      });
}

void defineTrace(CommandLine& line) {
  auto& command = CommandLine::add(line.app(), "trace", "Show the last operations again",
                                   "  paylevenkit trace\n"
                                   "  paylevenkit trace --last 3\n");
  const auto count = std::make_shared<std::size_t>(1);
  constexpr std::size_t kept = 200;
  command.add_option("--last", *count, "How many operations (1)")
      ->type_name("N")
      ->check(CLI::Range(std::size_t{1}, kept));
  line.whenChosen(command, [count](Session& session) {
    const auto operations = session.sandbox().journal().last(*count);
    auto report = session.report("trace");
    report.listing = [operations](const Terminal& terminal) {
      std::string text = operations.empty() ? "Nothing has happened yet.\n" : "";
      for (const auto& operation : operations) {
        text +=
            terminal.paint(Colour::bold, std::to_string(operation.number) + " " + operation.name) +
            "\n" + timelineTable(operation.events).text(terminal);
      }
      return text;
    };
    report.details["operations"] = listOf(operations);
    return report;
  });
}

Report removedStore(const std::string& path, bool sure) {
  Report report;
  report.operation = "reset";
  if (!std::filesystem::exists(path)) return said(report, "There is no store to remove.");
  if (!isStoreFile(path)) throw Problem("This file is not a sandbox store; it stays.");
  if (!sure) {
    if (!prompt::isPossible()) throw Problem("Say --yes to remove the store.");
    const auto answer = prompt::ask("Remove the store with everything in it? (yes/no)");
    if (answer != "yes") throw Problem("Nothing was removed.");
  }
  removeStore(path);
  return said(report, "The store is removed.");
}

void defineReset(CommandLine& line) {
  auto& command = CommandLine::add(line.app(), "reset", "Remove the store",
                                   "  paylevenkit reset\n"
                                   "  paylevenkit reset --yes --store FILE\n");
  const auto sure = std::make_shared<bool>(false);
  command.add_flag("--yes", *sure, "Do not ask");
  line.whenChosenWithoutStore(command, [sure](const GlobalOptions& options, const Printer&) {
    return removedStore(storePathOrDefault(options.storePath), *sure);
  });
}

}  // namespace

void defineTesterCommands(CommandLine& line) {
  defineOrphan(line);
  defineScenario(line);
  defineFault(line);
  defineTrace(line);
  defineReset(line);
}

}  // namespace hlv::sandbox::tool
