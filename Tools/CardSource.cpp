#include "Tools/CardSource.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "Sandbox/Cards/TestCards.h"
#include "Tools/Prompt.h"
#include "Values/Problem.h"

namespace hlv::sandbox::tool {
namespace {

std::string required(const std::optional<std::string>& line, const std::string& what) {
  if (!line || line->empty()) throw Problem("No " + what + " was given, so nothing was done.");
  return *line;
}

std::string hidden(const std::string& what) {
  return required(prompt::askHidden("The " + what + " (not shown)"), what);
}

std::string shown(const std::optional<std::string>& option, const std::string& what) {
  return option ? *option : required(prompt::ask("The " + what), what);
}

}  // namespace

void CardSource::addOptions(CLI::App& command) {
  command.add_option("--test-card", testCard_, "A test card, in place of typing one")
      ->type_name("NAME");
  command.add_option("--month", month_, "The month in which the card expires")->type_name("MM");
  command.add_option("--year", year_, "The year in which the card expires")->type_name("YYYY");
  command.add_option("--holder", holder_, "The name on the card")->type_name("NAME");
  command.add_option("--use-case", useCase_, "default, private or business")->type_name("NAME");
}

CardFields CardSource::read() const {
  auto fields = testCard_.empty() ? readTyped() : testCard(testCard_);
  fields.expiryMonth = month_.value_or(fields.expiryMonth);
  fields.expiryYear = year_.value_or(fields.expiryYear);
  fields.cardHolder = holder_.value_or(fields.cardHolder);
  fields.useCase = useCase_.value_or(fields.useCase);
  return fields;
}

CardFields CardSource::readTyped() const {
  if (!prompt::isPossible() && !(month_ && year_ && holder_)) {
    throw Problem("A card that comes from standard input also needs --month, --year and --holder.");
  }
  CardFields fields;
  fields.pan = hidden("card number");
  fields.cvv = hidden("security code");
  fields.expiryMonth = shown(month_, "month of expiry");
  fields.expiryYear = shown(year_, "year of expiry");
  fields.cardHolder = shown(holder_, "name on the card");
  return fields;
}

CardFields CardSource::testCard(const std::string& name) {
  const auto* card = findTestCard(name);
  if (!card)
    throw Problem("There is no test card of that name; `paylevenkit add --help` lists them.");
  return card->fields;
}

std::string CardSource::testCardList() {
  const auto cards = testCards();
  std::size_t width = 0;
  for (const auto& card : cards) width = std::max(width, card.name.size());
  std::string list = "Test cards:\n";
  for (const auto& card : cards) {
    list += "  " + card.name + std::string(width - card.name.size() + 2, ' ') + card.effect + "\n";
  }
  return list;
}

}  // namespace hlv::sandbox::tool
