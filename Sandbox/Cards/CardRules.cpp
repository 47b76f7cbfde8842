#include "Sandbox/Cards/CardRules.h"

#include <algorithm>
#include <array>

#include "Sandbox/Cards/CardBrands.h"

namespace hlv::sandbox {
namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool allDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

bool passesLuhn(std::string_view digits) {
  int sum = 0;
  bool doubled = false;
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, doubled = !doubled) {
    const int value = (*digit - '0') * (doubled ? 2 : 1);
    sum += value > 9 ? value - 9 : value;
  }
  return sum % 10 == 0;
}

std::optional<BrokenRule> brokenNumberRule(std::string_view number, const CardBrand* brand) {
  if (number.empty()) {
    return BrokenRule{CardErrorCode::numberMissing, "The card number is missing.", "pan is empty"};
  }
  if (!allDigits(number)) {
    return BrokenRule{CardErrorCode::numberNotDigits, "The card number may hold digits only.",
                      "pan holds characters other than digits, blanks and hyphens"};
  }
  if (!brand) {
    return BrokenRule{CardErrorCode::brandUnknown,
                      "Cards of this kind are not known; check the card number.",
                      "pan begins with no known issuer range"};
  }
  if (!brand->allowsLength(number.size())) {
    return BrokenRule{
        CardErrorCode::numberLength, "The card number is too short or too long.",
        "pan has a length that the brand " + std::string(brand->name) + " does not have"};
  }
  if (brand->hasLuhn && !passesLuhn(number)) {
    return BrokenRule{CardErrorCode::numberChecksum,
                      "The card number is not right; check its digits.",
                      "pan does not pass the Luhn test"};
  }
  return std::nullopt;
}

std::optional<BrokenRule> brokenExpiryRule(const std::string& month, const std::string& year,
                                           std::chrono::year_month today) {
  if (month.size() != 2 || !allDigits(month) || month < "01" || month > "12") {
    return BrokenRule{CardErrorCode::expiryMonth, "The expiry month must lie between 1 and 12.",
                      "expiryMonth is not a month"};
  }
  if (year.size() != 4 || !allDigits(year)) {
    return BrokenRule{CardErrorCode::expiryYear, "The expiry year must have two or four digits.",
                      "expiryYear is not a year"};
  }
  if (hasExpired(month, year, today)) {
    return BrokenRule{CardErrorCode::expired, "The card has expired.",
                      "the expiry lies in the past"};
  }
  return std::nullopt;
}

bool isBlank(const std::string& text) {
  return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

}  // namespace

std::optional<BrokenRule> brokenRule(const CardFields& card, std::chrono::year_month month) {
  const auto* brand = findCardBrand(card.pan);
  if (auto broken = brokenNumberRule(card.pan, brand)) return broken;
  if (auto broken = brokenExpiryRule(card.expiryMonth, card.expiryYear, month)) return broken;
  if (!allDigits(card.cvv) || card.cvv.size() != brand->securityCodeLength) {
    const auto length = std::to_string(brand->securityCodeLength);
    return BrokenRule{CardErrorCode::securityCode,
                      "The security code of this card has " + length + " digits.",
                      "cvv does not have " + length + " digits"};
  }
  if (isBlank(card.cardHolder)) {
    return BrokenRule{CardErrorCode::cardHolder, "The name of the card holder is missing.",
                      "cardHolder is empty or blank"};
  }
  return std::nullopt;
}

bool isCardNumber(std::string_view digits) {
  return !brokenNumberRule(digits, findCardBrand(digits));
}

bool hasExpired(const std::string& expiryMonth, const std::string& expiryYear,
                std::chrono::year_month month) {
  const std::chrono::month last(static_cast<unsigned>(std::stoi(expiryMonth)));
  return std::chrono::year(std::stoi(expiryYear)) / last < month;
}

bool isUseCase(std::string_view name) {
  static constexpr std::array<std::string_view, 3> useCases = {"default", "private", "business"};
  return std::find(useCases.begin(), useCases.end(), name) != useCases.end();
}

BrokenRule unknownUseCase() {
  return {CardErrorCode::useCase, "The use case must be default, private or business.",
          "the use case is none that instruments are stored under"};
}

CardFields normalised(const CardFields& card) {
  auto result = card;
  std::erase_if(result.pan, [](char character) { return character == ' ' || character == '-'; });
  if (result.expiryMonth.size() == 1) result.expiryMonth.insert(0, "0");
  if (result.expiryYear.size() == 2) result.expiryYear.insert(0, "20");
  return result;
}

std::string maskedPan(std::string_view pan) {
  const auto visible = lastFourDigits(pan);
  return std::string(pan.size() - visible.size(), '*') + visible;
}

std::string lastFourDigits(std::string_view pan) {
  // A number too short to hide anything of is hidden whole.
  return pan.size() < 8 ? std::string() : std::string(pan.substr(pan.size() - 4));
}

}  // namespace hlv::sandbox
