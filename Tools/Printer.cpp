#include "Tools/Printer.h"

#include <iostream>

#include "Tools/SideBySide.h"
#include "Tools/Timeline.h"

namespace hlv::tool {
namespace {

using json = nlohmann::ordered_json;

json orNull(const NullableString& string) { return string ? json(*string) : json(); }

json errorObject(const Error& error) {
  return {{"domain", error.domain()},
          {"code", error.code()},
          {"localizedDescription", orNull(error.localizedDescription())},
          {"developerMessage", orNull(error.developerMessage())}};
}

json cardObject(const sandbox::BackendCard& card) {
  const auto& address = card.billingAddress;
  return {{"halvoID", card.halvoID},
          {"brand", card.brand},
          {"lastFourDigits", card.lastFourDigits},
          {"useCase", card.useCase},
          {"externalIdentifier", orNull(card.externalIdentifier)},
          {"cardHolder", card.cardHolder},
          {"expiryMonth", card.expiryMonth},
          {"expiryYear", card.expiryYear},
          {"billingAddress",
           {{"street", orNull(address.street)},
            {"city", orNull(address.city)},
            {"countryCode", orNull(address.countryCode)},
            {"zip", orNull(address.zip)},
            {"businessName", orNull(address.businessName)}}}};
}

json instrumentObject(const sandbox::ProviderInstrument& instrument) {
  return {{"identifier", orNull(instrument.identifier)},
          {"brand", instrument.brand},
          {"maskedPan", instrument.maskedPan},
          {"useCase", instrument.useCase},
          {"expiryMonth", instrument.expiryMonth},
          {"expiryYear", instrument.expiryYear},
          {"state", instrument.state}};
}

const char* nameOf(Report::Outcome outcome) {
  switch (outcome) {
    case Report::Outcome::succeeded:
      return "succeeded";
    case Report::Outcome::broughtNothing:
      return "brought-nothing";
    case Report::Outcome::failed:
      return "failed";
    case Report::Outcome::neverCompleted:
      return "never-completed";
  }
  return "failed";
}

void write(const json& document) {
  std::cout << document.dump(2, ' ', false, json::error_handler_t::replace) << "\n";
}

std::string mark(const Terminal& terminal, const Report& report) {
  if (report.isFailure()) return terminal.paint(Colour::red, "✗ ");
  if (report.outcome == Report::Outcome::succeeded) return terminal.paint(Colour::green, "✓ ");
  return terminal.paint(Colour::yellow, "? ");
}

void writeOutcome(const Terminal& terminal, const Report& report) {
  if (report.sentence.empty()) return;
  std::cout << mark(terminal, report) << terminal.paint(Colour::bold, report.sentence) << "\n";
  if (!report.error) return;
  std::cout << "  " << report.error->domain() << " " << report.error->code() << ": "
            << report.error->localizedDescription().value_or("no description") << "\n"
            << "  For the developer: " << report.error->developerMessage().value_or("no message")
            << "\n";
}

void writeStory(const Terminal& terminal, const Report& report) {
  const auto timeline = Timeline::table(report.timeline);
  if (!timeline.isEmpty()) std::cout << "\n" << timeline.text(terminal);
  if (!report.unknownSides.empty()) {
    std::cout << "\n  The two sides are not known: " << report.unknownSides << "\n";
    return;
  }
  const SideBySide sides(report.backend, report.provider);
  std::cout << "\n"
            << sides.table(terminal.columns()).text(terminal)
            << terminal.paint(sides.unmatched() == 0 ? Colour::green : Colour::yellow,
                              "  " + sides.verdict())
            << "\n";
}

}  // namespace

void Printer::heading(const std::string& text) const {
  if (json_) return;
  std::cout << Terminal::ofStandardOutput().paint(Colour::bold, "── " + text) << std::endl;
}

void Printer::step(const Report& report) const {
  if (json_) return;
  print(report);
  std::cout << std::endl;
}

void Printer::print(const Report& report) const {
  if (json_) {
    write(document(report));
    return;
  }
  const auto terminal = Terminal::ofStandardOutput();
  writeOutcome(terminal, report);
  if (report.listing) {
    std::cout << report.listing(terminal);
  } else {
    writeStory(terminal, report);
  }
}

void Printer::printProblem(const std::string& sentence) const {
  std::cerr << "paylevenkit: " << sentence << std::endl;
  if (!json_) return;
  write({{"error",
          {{"domain", "paylevenkit"},
           {"code", 2},
           {"localizedDescription", sentence},
           {"developerMessage", nullptr}}}});
}

json Printer::document(const Report& report) {
  const SideBySide sides(report.backend, report.provider);
  json document = {{"operation", report.operation},
                   {"outcome", nameOf(report.outcome)},
                   {"message", report.sentence},
                   {"error", report.error ? errorObject(*report.error) : json()},
                   {"timeline", timeline(report.timeline)},
                   {"backend", json::array()},
                   {"provider", json::array()},
                   {"agreement", sides.unmatched() == 0},
                   {"unmatched", sides.unmatched()}};
  for (const auto& card : report.backend) document["backend"].push_back(cardObject(card));
  for (const auto& instrument : report.provider) {
    document["provider"].push_back(instrumentObject(instrument));
  }
  document.update(report.details);
  return document;
}

json Printer::timeline(const std::vector<sandbox::Event>& events) {
  json list = json::array();
  for (const auto& event : events) {
    list.push_back({{"from", event.from},
                    {"to", event.to},
                    {"what", event.what},
                    {"result", event.result},
                    {"thread", event.thread}});
  }
  return list;
}

}  // namespace hlv::tool
