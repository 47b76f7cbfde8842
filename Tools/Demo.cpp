#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <string>

#include "Sandbox/Records/EnteredAddress.h"
#include "Tools/CardOperations.h"
#include "Tools/CardSource.h"
#include "Tools/CommandLine.h"
#include "Tools/Output/SideBySide.h"
#include "Tools/Prompt.h"
#include "Values/Problem.h"

namespace hlv::sandbox::tool {
namespace {

struct DemoOptions {
  bool testCards = false;
  bool typed = false;
  bool keep = false;
};

/// What a person or standard input gives for one card; everything that is not given is the test
/// card's.
CardFields card(const DemoOptions& options, const std::string& testCard) {
  auto fields = CardSource::testCard(testCard);
  const bool asks = prompt::isPossible();
  if (options.testCards || !(asks || options.typed)) return fields;

  const auto hidden = [](const std::string& what) {
    auto line = prompt::askHidden(what);
    if (!line) throw Problem("The input ended before the demo did.");
    return *line;
  };
  const auto shown = [](const std::string& what, const std::string& proposal) {
    const auto line = prompt::ask(what + ", or Enter for " + proposal);
    return line && !line->empty() ? *line : proposal;
  };
  const auto number = hidden("Card number, or Enter for the test card " + testCard);
  if (number.empty()) return fields;
  fields.pan = number;
  fields.cvv = hidden("Security code");
  if (asks) {
    fields.expiryMonth = shown("Month of expiry", fields.expiryMonth);
    fields.expiryYear = shown("Year of expiry", fields.expiryYear);
    fields.cardHolder = shown("Name on the card", fields.cardHolder);
  }
  return fields;
}

std::string newFolder() {
  auto path = (std::filesystem::temp_directory_path() / "paylevenkit-XXXXXX").string();
  if (!::mkdtemp(path.data())) throw Problem("No folder for the store can be made.");
  return path;
}

class DemoRun {
 public:
  DemoRun(Session& session, const Printer& printer, const DemoOptions& options)
      : session_(session), printer_(printer), options_(options) {}

  Report run() {
    step("A guest signs in", [&] { return signIn(); });
    step("A first card: the provider makes a token for the guest",
         [&] { return add("visa", "default"); });
    step("A second card, for business, under the same token",
         [&] { return add("mastercard", "business"); });
    step("The billing address of the first card changes", [&] {
      return updateCard(session_, cardOf("default"),
                        EnteredAddress::make({.street = "Harbour Road 1",
                                              .city = "Hamburg",
                                              .countryCode = "DE",
                                              .zip = "20457",
                                              .businessName = {}}),
                        session_.guest());
    });
    step("The second card goes, on both sides",
         [&] { return removeCard(session_, cardOf("business"), "business", session_.guest()); });
    step("The provider holds an instrument that the backend does not know",
         [&] { return orphan(); });
    step("The app returns to the foreground, and the kit synchronises",
         [&] { return synchronize(session_, "foreground"); });
    return end();
  }

 private:
  void step(const std::string& heading, const std::function<Report()>& act) {
    if (failed_) return;
    printer_.heading(heading);
    auto report = session_.attempt(act);
    printer_.step(report);
    failed_ = report.isFailure();
    auto document = documentOf(report);
    document["heading"] = heading;
    steps_.push_back(std::move(document));
  }

  Report signIn() {
    const std::string email = "guest@example.com";
    session_.begin("sign-in");
    session_.signIn(email);
    session_.enableKit();
    session_.settle();
    return session_.report(Report::Outcome::succeeded, email + " is signed in.");
  }

  Report add(const std::string& testCard, const std::string& useCase) {
    auto fields = card(options_, testCard);
    fields.useCase = useCase;
    return addCard(session_, EnteredCard::make(std::move(fields)),
                   EnteredAddress::make({.street = "Market Square 2",
                                         .city = "Berlin",
                                         .countryCode = "DE",
                                         .zip = "10178",
                                         .businessName = {}}),
                   session_.guest());
  }

  Report orphan() {
    session_.begin("orphan");
    auto fields = CardSource::testCard("amex");
    fields.useCase = "private";
    auto report =
        session_.report(session_.tester()->addOrphanInstrument(fields), "The two sides disagree.");
    if (!report.isFailure() && SideBySide(report.backend, report.provider).unmatched() == 0) {
      report.outcome = Report::Outcome::failed;
      report.sentence = "The two sides should disagree now.";
    }
    return report;
  }

  Report end() {
    auto report = session_.report(Report::Outcome::failed, "The demo ended early.");
    const SideBySide sides(report.backend, report.provider);
    if (!failed_ && sides.unmatched() == 0) {
      report.outcome = Report::Outcome::succeeded;
      report.sentence = "The demo is complete. " + sides.verdict();
    } else if (!failed_) {
      report.sentence = "The demo is complete, but " + sides.verdict();
    }
    report.operation = "demo";
    report.timeline.clear();
    report.showNoSides();
    report.details["steps"] = steps_;
    return report;
  }

  NullableString cardOf(const std::string& useCase) const {
    for (const auto& card : session_.sandbox().backendCards()) {
      if (card.useCase == useCase) return card.halvoID;
    }
    return std::nullopt;
  }

  Session& session_;
  const Printer& printer_;
  const DemoOptions& options_;
  Json steps_ = Json::array();
  bool failed_ = false;
};

}  // namespace

void defineDemoCommand(CommandLine& line) {
  auto& command = CommandLine::add(line.app(), "demo",
                                   "Run through the life of a guest's cards on a fresh store",
                                   "  paylevenkit demo\n"
                                   "  paylevenkit demo --test-cards --store demo.sqlite\n"
                                   "  paylevenkit demo --typed < numbers-and-codes.txt\n");
  const auto options = std::make_shared<DemoOptions>();
  command.add_flag("--test-cards", options->testCards, "Do not ask for cards");
  command.add_flag("--typed", options->typed,
                   "Read a number and a security code for each card from standard input");
  command.add_flag("--keep", options->keep, "Keep the store, and say where it is");
  line.whenChosenWithoutStore(command, [options](GlobalOptions global, const Printer& printer) {
    global.requireOwnServices("demo");
    if (global.storePath.empty()) {
      global.isInMemory = !options->keep;
      if (options->keep) global.storePath = newFolder() + "/store.sqlite";
    } else if (std::filesystem::exists(global.storePath)) {
      throw Problem("The demo begins with a fresh store, and this file is there already.");
    }
    auto report = CommandLine::inSession(
        global, [&](Session& session) { return DemoRun(session, printer, *options).run(); });
    if (options->keep) report.sentence += " The store is " + global.storePath + ".";
    return report;
  });
}

}  // namespace hlv::sandbox::tool
