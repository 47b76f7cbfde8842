#include "Tools/Output/SideBySide.h"

#include <algorithm>
#include <utility>

#include "Values/Names.h"

namespace hlv::sandbox::tool {
namespace {

std::string lastFour(const std::string& pan) {
  return pan.size() > 4 ? pan.substr(pan.size() - 4) : pan;
}

/// What describes a card and an instrument.
struct Description {
  std::string brand;
  std::string digits;
  std::string expiry;
  std::string rest;

  explicit Description(const BackendCard& card)
      : brand(card.brand),
        digits(card.lastFourDigits),
        expiry(card.expiryMonth + "/" + card.expiryYear),
        rest(card.useCase) {}
  explicit Description(const ProviderInstrument& instrument)
      : brand(instrument.brand),
        digits(lastFour(instrument.maskedPan)),
        expiry(instrument.expiryMonth + "/" + instrument.expiryYear),
        rest(instrument.useCase) {
    if (instrument.state != 0) rest += " (state " + std::to_string(instrument.state) + ")";
  }

  std::string inFull() const { return brand + " •••• " + digits + " " + expiry + " " + rest; }
  std::string inShort() const { return brand + " ••" + digits + " " + rest; }
};

/// The widest row of two long brands, in full.
constexpr std::size_t columnsInFull = 130;

std::string shortened(const std::string& identifier) {
  constexpr std::size_t shown = 7;
  return identifier.size() <= shown + 1 ? identifier : identifier.substr(0, shown) + "…";
}

}  // namespace

std::string describe(const BackendCard& card) { return Description(card).inFull(); }
std::string describe(const ProviderInstrument& instrument) {
  return Description(instrument).inFull();
}

std::string describe(const AddressFields& address) {
  std::vector<std::string> fields{address.businessName.value_or(""), address.street.value_or(""),
                                  address.zip.value_or(""), address.city.value_or(""),
                                  address.countryCode.value_or("")};
  std::erase(fields, "");
  return fields.empty() ? "no billing address" : joined(fields);
}

SideBySide::SideBySide(const std::vector<BackendCard>& cards,
                       std::vector<ProviderInstrument> instruments)
    : pairs_(pairsOf(cards, std::move(instruments))) {}

std::size_t SideBySide::unmatched() const {
  return static_cast<std::size_t>(std::count_if(pairs_.begin(), pairs_.end(), [](const auto& pair) {
    return !pair.card || !pair.instrument;
  }));
}

std::string SideBySide::verdict() const {
  const auto count = unmatched();
  if (count == 0) return "Both sides agree.";
  return count == 1 ? "1 does not match." : std::to_string(count) + " do not match.";
}

Table SideBySide::table(std::size_t columns) const {
  const bool full = columns >= columnsInFull;
  const auto name = [&](const std::string& identifier) {
    return full ? identifier : shortened(identifier);
  };
  const auto text = [&](const auto& one) {
    return full ? Description(one).inFull() : Description(one).inShort();
  };

  Table table;
  table.add({{"backend", Colour::dim}, "", "", {"provider", Colour::dim}});
  if (pairs_.empty()) table.add({{"nothing", Colour::dim}, "", "", {"nothing", Colour::dim}});
  for (const auto& [card, instrument] : pairs_) {
    const bool matched = card && instrument;
    const auto colour = matched ? Colour::plain : Colour::yellow;
    table.add({{card ? name(card->halvoID) : "–", colour},
               {card ? text(*card) : "", colour},
               {matched ? "═" : "✗", matched ? Colour::green : Colour::red},
               {instrument ? name(instrument->identifier.value_or("no identifier")) : "–", colour},
               {instrument ? text(*instrument) : "", colour}});
  }
  return table;
}

}  // namespace hlv::sandbox::tool
