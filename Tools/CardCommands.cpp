#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "Sandbox/Cards/EnteredCard.h"
#include "Sandbox/Records/EnteredAddress.h"
#include "Tools/CardOperations.h"
#include "Tools/CardSource.h"
#include "Tools/CommandLine.h"
#include "Tools/Output/SideBySide.h"
#include "Tools/Output/Table.h"
#include "Values/Problem.h"

namespace hlv::sandbox::tool {
namespace {

/// What is typed of a card operation, and the names that `--without` was given.
struct Options {
  CardSource card;
  std::string ID;
  NullableString useCase;
  AddressFields address;
  std::vector<std::string> without;

  void addID(CLI::App& command) {
    command.add_option("ID", ID, "The card, as `paylevenkit cards` names it")->required();
  }
  void addAddress(CLI::App& command) {
    command.add_option("--street", address.street, "Street of the billing address");
    command.add_option("--city", address.city, "City of the billing address");
    command.add_option("--zip", address.zip, "Postal code of the billing address");
    command.add_option("--country", address.countryCode, "Country of the billing address, e.g. DE");
    command.add_option("--business", address.businessName, "Business of the billing address");
  }
  void addWithout(CLI::App& command, const std::vector<std::string>& known) {
    command.add_option("--without", without, "Pass null instead, to see what the kit says")
        ->type_name("ARGUMENT")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember(known));
  }

  bool has(const std::string& name) const {
    return std::find(without.begin(), without.end(), name) == without.end();
  }
  std::shared_ptr<HLVSDKGuest> guest(const Session& session) const {
    return has("guest") ? session.guest() : nullptr;
  }
  std::shared_ptr<EnteredAddress> billingAddress() const {
    return has("address") ? EnteredAddress::make(address) : nullptr;
  }
};

void defineAdd(CommandLine& line) {
  auto& command = CommandLine::add(line.app(), "add", "Add a card of the guest",
                                   "  paylevenkit add --test-card visa\n"
                                   "  paylevenkit add --use-case business --city Berlin\n"
                                   "  paylevenkit add --month 12 --year 2030 --holder \"A Guest\" "
                                   "< number-and-code.txt\n\n" +
                                       CardSource::testCardList());
  const auto options = std::make_shared<Options>();
  options->card.addOptions(command);
  options->addAddress(command);
  options->addWithout(command, {"card", "address", "guest"});
  line.whenChosen(command, [options](Session& session) {
    const auto guest = options->guest(session);
    const auto card = options->has("card") ? EnteredCard::make(options->card.read()) : nullptr;
    return addCard(session, card, options->billingAddress(), guest);
  });
}

void defineUpdate(CommandLine& line) {
  auto& command =
      CommandLine::add(line.app(), "update", "Change the billing address of a card",
                       "  paylevenkit update ID --street \"Harbour Road 1\" --zip 20457\n"
                       "  paylevenkit update ID --without address\n");
  const auto options = std::make_shared<Options>();
  options->addID(command);
  options->addAddress(command);
  options->addWithout(command, {"address", "guest"});
  line.whenChosen(command, [options](Session& session) {
    const auto guest = options->guest(session);
    return updateCard(session, options->ID, options->billingAddress(), guest);
  });
}

void defineDelete(CommandLine& line) {
  auto& command = CommandLine::add(line.app(), "delete", "Delete a card on both sides",
                                   "  paylevenkit delete ID\n"
                                   "  paylevenkit delete ID --use-case private\n");
  const auto options = std::make_shared<Options>();
  options->addID(command);
  command.add_option("--use-case", options->useCase, "default: the use case of the card")
      ->type_name("NAME");
  options->addWithout(command, {"id", "use-case", "guest"});
  line.whenChosen(command, [options](Session& session) {
    const auto guest = options->guest(session);
    auto useCase = options->useCase;
    if (!useCase) {
      const auto cards = session.backendCards();
      const auto* card = findCard(cards, options->ID);
      useCase = card ? card->useCase : "default";
    }
    if (!options->has("use-case")) useCase.reset();
    const auto ID = options->has("id") ? NullableString(options->ID) : std::nullopt;
    return removeCard(session, ID, useCase, guest);
  });
}

/// Lists what one side of the guest holds.
template <class Rows>
void defineList(CommandLine& line, const std::string& name, const std::string& description,
                const std::string& empty, Rows addRows) {
  auto& command =
      CommandLine::add(line.app(), name, description,
                       "  paylevenkit " + name + "\n  paylevenkit " + name + " --json\n");
  line.whenChosen(command, [name, empty, addRows](Session& session) {
    session.guest();
    Table table;
    auto report = session.report(name);
    if (!report.unknownSides.empty()) throw Problem(report.unknownSides);
    addRows(table, report);
    report.list(std::move(table), empty);
    return report;
  });
}

void defineLists(CommandLine& line) {
  defineList(
      line, "cards", "List the guest's cards at the backend",
      "The guest has no cards at the backend.", [](Table& table, const Report& report) {
        for (const auto& card : report.backend) {
          table.add({card.halvoID,
                     describe(card),
                     card.cardHolder,
                     describe(card.billingAddress),
                     {card.externalIdentifier.value_or("no external identifier"), Colour::dim}});
        }
      });
  defineList(line, "instruments", "List the guest's instruments at the provider",
             "The guest has no instruments at the provider.",
             [](Table& table, const Report& report) {
               for (const auto& instrument : report.provider) {
                 table.add({instrument.identifier.value_or("no identifier"), describe(instrument)});
               }
             });
}

}  // namespace

void defineCardCommands(CommandLine& line) {
  defineAdd(line);
  defineUpdate(line);
  defineDelete(line);
  defineLists(line);
}

}  // namespace hlv::sandbox::tool
