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

namespace hlv::tool {
namespace {

/// The names that `--without` was given.
struct Without {
  std::vector<std::string> names;

  void addOption(CLI::App& command, const std::vector<std::string>& known) {
    command.add_option("--without", names, "Pass null instead, to see what the kit says")
        ->type_name("ARGUMENT")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember(known));
  }
  bool has(const std::string& name) const {
    return std::find(names.begin(), names.end(), name) != names.end();
  }
};

void addAddressOptions(CLI::App& command, sandbox::AddressFields& fields) {
  command.add_option("--street", fields.street, "Street of the billing address");
  command.add_option("--city", fields.city, "City of the billing address");
  command.add_option("--zip", fields.zip, "Postal code of the billing address");
  command.add_option("--country", fields.countryCode, "Country of the billing address, e.g. DE");
  command.add_option("--business", fields.businessName, "Business of the billing address");
}

std::shared_ptr<HLVSDKGuest> guestUnless(bool without, const Session& session) {
  return without ? nullptr : session.guest();
}

void defineAdd(CommandLine& line) {
  struct Options {
    CardSource card;
    sandbox::AddressFields address;
    Without without;
  };
  auto& command = CommandLine::add(line.app(), "add", "Add a card of the guest",
                                   "  paylevenkit add --test-card visa\n"
                                   "  paylevenkit add --use-case business --city Berlin\n"
                                   "  paylevenkit add --month 12 --year 2030 --holder \"A Guest\" "
                                   "< number-and-code.txt\n\n" +
                                       CardSource::testCardList());
  const auto options = std::make_shared<Options>();
  options->card.addOptions(command);
  addAddressOptions(command, options->address);
  options->without.addOption(command, {"card", "address", "guest"});
  line.whenChosen(command, [options](Session& session) {
    const auto& without = options->without;
    const auto guest = guestUnless(without.has("guest"), session);
    const auto card =
        without.has("card") ? nullptr : sandbox::EnteredCard::make(options->card.read());
    const auto address =
        without.has("address") ? nullptr : sandbox::EnteredAddress::make(options->address);
    return addCard(session, card, address, guest);
  });
}

void defineUpdate(CommandLine& line) {
  struct Options {
    std::string ID;
    sandbox::AddressFields address;
    Without without;
  };
  auto& command =
      CommandLine::add(line.app(), "update", "Change the billing address of a card",
                       "  paylevenkit update ID --street \"Harbour Road 1\" --zip 20457\n"
                       "  paylevenkit update ID --without address\n");
  const auto options = std::make_shared<Options>();
  command.add_option("ID", options->ID, "The card, as `paylevenkit cards` names it")->required();
  addAddressOptions(command, options->address);
  options->without.addOption(command, {"address", "guest"});
  line.whenChosen(command, [options](Session& session) {
    const auto& without = options->without;
    const auto guest = guestUnless(without.has("guest"), session);
    const auto address =
        without.has("address") ? nullptr : sandbox::EnteredAddress::make(options->address);
    return updateCard(session, options->ID, address, guest);
  });
}

void defineDelete(CommandLine& line) {
  struct Options {
    std::string ID;
    NullableString useCase;
    Without without;
  };
  auto& command = CommandLine::add(line.app(), "delete", "Delete a card on both sides",
                                   "  paylevenkit delete ID\n"
                                   "  paylevenkit delete ID --use-case private\n");
  const auto options = std::make_shared<Options>();
  command.add_option("ID", options->ID, "The card, as `paylevenkit cards` names it")->required();
  command.add_option("--use-case", options->useCase, "default: the use case of the card")
      ->type_name("NAME");
  options->without.addOption(command, {"id", "use-case", "guest"});
  line.whenChosen(command, [options](Session& session) {
    const auto& without = options->without;
    const auto guest = guestUnless(without.has("guest"), session);
    auto useCase = options->useCase;
    if (!useCase) {
      const auto cards = session.backendCards();
      const auto* card = sandbox::findCard(cards, options->ID);
      useCase = card ? card->useCase : "default";
    }
    if (without.has("use-case")) useCase.reset();
    const auto ID = without.has("id") ? std::nullopt : NullableString(options->ID);
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

}  // namespace hlv::tool
