#include "Tools/Output/Report.h"

#include <iostream>

#include "Sandbox/JSON/CardRecords.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/JSON/JournalRecords.h"
#include "Tools/Output/SideBySide.h"
#include "Tools/Output/Timeline.h"
#include "Values/Names.h"

namespace hlv::sandbox::tool {
namespace {

/// Of what the command itself says.
constexpr const char* commandDomain = "paylevenkit";

Json errorObject(const std::string& domain, std::int64_t number, const Json& message,
                 const Json& developerMessage) {
  return {{"domain", domain},
          {"number", number},
          {"message", message},
          {"developer_message", developerMessage}};
}

/// A failure that no error describes is described in the report's own sentence.
Json errorOf(const Report& report) {
  if (const auto& error = report.error) {
    return errorObject(error->domain(), error->code(), orNull(error->localizedDescription()),
                       orNull(error->developerMessage()));
  }
  return report.isFailure()
             ? errorObject(commandDomain, report.exitStatus(), report.sentence, nullptr)
             : Json();
}

constexpr Names<Report::Outcome, 4> outcomes{
    {{Report::Outcome::succeeded, "succeeded"},
     {Report::Outcome::broughtNothing, "brought-nothing"},
     {Report::Outcome::failed, "failed"},
     {Report::Outcome::neverCompleted, "never-completed"}}};

void write(const Json& document) {
  const bool onlyASCII = !Terminal::ofStandardOutput().hasUTF8();
  std::cout << document.dump(2, ' ', onlyASCII, Json::error_handler_t::replace) << "\n";
}

std::string mark(const Terminal& terminal, const Report& report) {
  if (report.outcome == Report::Outcome::broughtNothing)
    return terminal.paint(Colour::yellow, "? ");
  return report.isFailure() ? terminal.paint(Colour::red, "✗ ")
                            : terminal.paint(Colour::green, "✓ ");
}

std::string outcomeText(const Terminal& terminal, const Report& report) {
  if (report.sentence.empty()) return {};
  auto text =
      mark(terminal, report) + terminal.paint(Colour::bold, escaped(report.sentence)) + "\n";
  if (const auto& error = report.error) {
    text += "  " + escaped(error->domain()) + " " + std::to_string(error->code()) + ": " +
            escaped(error->localizedDescription().value_or("no description")) + "\n" +
            "  For the developer: " + escaped(error->developerMessage().value_or("no message")) +
            "\n";
  }
  return text;
}

std::string timelineText(const Terminal& terminal, const Report& report) {
  std::string text;
  const auto timeline = timelineTable(report.timeline);
  if (!timeline.isEmpty()) text += "\n" + timeline.text(terminal);
  if (!report.unknownSides.empty()) {
    return text + "\n  The two sides are not known: " + escaped(report.unknownSides) + "\n";
  }
  const SideBySide sides(report.backend, report.provider);
  return text + "\n" + sides.table(terminal.columns()).text(terminal) +
         terminal.paint(sides.unmatched() == 0 ? Colour::green : Colour::yellow,
                        "  " + sides.verdict()) +
         "\n";
}

}  // namespace

Json documentOf(const Report& report) {
  const SideBySide sides(report.backend, report.provider);
  Json document = {{"operation", report.operation},       {"outcome", outcomes.of(report.outcome)},
                   {"message", report.sentence},          {"error", errorOf(report)},
                   {"timeline", listOf(report.timeline)}, {"backend", listOf(report.backend)},
                   {"provider", listOf(report.provider)}, {"agreement", sides.unmatched() == 0},
                   {"unmatched", sides.unmatched()}};
  document.update(report.details);
  return document;
}

void Printer::heading(const std::string& text) const {
  if (json_) return;
  const auto terminal = Terminal::ofStandardOutput();
  std::cout << terminal.encoded(terminal.paint(Colour::bold, "── " + text)) << std::endl;
}

void Printer::step(const Report& report) const {
  if (json_) return;
  print(report);
  std::cout << std::endl;
}

void Printer::print(const Report& report) const {
  if (json_) {
    write(documentOf(report));
    return;
  }
  const auto terminal = Terminal::ofStandardOutput();
  std::cout << terminal.encoded(
      outcomeText(terminal, report) +
      (report.listing ? report.listing(terminal) : timelineText(terminal, report)));
}

void Printer::printProblem(const std::string& sentence) const {
  const auto terminal = Terminal::ofStandardOutput();
  std::cerr << terminal.encoded("paylevenkit: " + escaped(sentence)) << std::endl;
  if (json_) write({{"error", errorObject(commandDomain, 2, sentence, nullptr)}});
}

}  // namespace hlv::sandbox::tool
