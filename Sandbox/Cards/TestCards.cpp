#include "Sandbox/Cards/TestCards.h"

#include <algorithm>
#include <string_view>

#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Cards/SpecialCards.h"

namespace hlv::sandbox {
namespace {

struct KnownCard {
  std::string_view name;
  std::string_view pan;
  std::string_view effect;
};

constexpr std::string_view succeeds = "Both services accept it.";
constexpr std::string_view backendRefused = "backend-refused";

// Numbers that payment providers publish for tests. No two share their last four digits.
constexpr KnownCard knownCards[] = {
    {"visa", "4111111111111111", succeeds},
    {"mastercard", "5555555555554444", succeeds},
    {"amex", "378282246310005", succeeds},
    {"discover", "6011111111111117", succeeds},
    {"jcb", "3566002020360505", succeeds},
    {"diners", "30569309025904", succeeds},
    {"maestro", "6304000000000000", succeeds},
    {"unionpay", "6243030000000001", succeeds},
    {"declined", "4000000000000002", "The provider declines it and stores nothing."},
    {"other-state", "4000111111111115", "The provider stores it in a state that cannot be used."},
    {"no-identifier", "5105105105105100", "The provider stores it without an identifier."},
    {"no-token", "4012888888881881",
     "The provider stores it and answers a request for a new user token with none."},
    {backendRefused, "4000000000009995", "The provider stores it; the backend refuses it."},
};

const KnownCard* findByNumber(const std::string& pan) {
  const auto* found = std::find_if(std::begin(knownCards), std::end(knownCards),
                                   [&](const KnownCard& card) { return pan == card.pan; });
  return found == std::end(knownCards) ? nullptr : found;
}

TestCard typed(const KnownCard& card) {
  const auto ahead = monthOf(std::chrono::system_clock::now()) + std::chrono::years(4);
  TestCard result;
  result.name = card.name;
  result.effect = card.effect;
  result.fields.pan = card.pan;
  result.fields.expiryMonth = "12";
  result.fields.expiryYear = std::to_string(static_cast<int>(ahead.year()));
  result.fields.cvv = std::string("1234").substr(0, findCardBrand(card.pan)->securityCodeLength);
  result.fields.cardHolder = "Erika Mustermann";
  return result;
}

}  // namespace

std::vector<TestCard> testCards() {
  std::vector<TestCard> cards;
  for (const auto& card : knownCards) cards.push_back(typed(card));
  return cards;
}

const TestCard* findTestCard(const std::string& name) {
  static const auto& cards = *new std::vector<TestCard>(testCards());
  const auto found = std::find_if(cards.begin(), cards.end(),
                                  [&](const TestCard& card) { return card.name == name; });
  return found == cards.end() ? nullptr : &*found;
}

std::string providerVariation(const std::string& pan) {
  const auto* card = findByNumber(pan);
  const bool isSpecial = card && card->effect != succeeds && card->name != backendRefused;
  return isSpecial ? std::string(card->name) : "";
}

bool isRefusedByBackend(const std::string& brand, const std::string& digits) {
  return std::any_of(std::begin(knownCards), std::end(knownCards), [&](const KnownCard& card) {
    return card.name == backendRefused && lastFourDigits(card.pan) == digits &&
           findCardBrand(card.pan)->name == brand;
  });
}

}  // namespace hlv::sandbox
