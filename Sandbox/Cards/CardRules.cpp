#include "Sandbox/Cards/CardRules.h"

#include <algorithm>
#include <array>
#include <utility>

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

bool isBlank(const std::string& text) {
  return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

}  // namespace

std::optional<BrokenRule> brokenRule(const CardFields& card, std::chrono::year_month month) {
  using Code = CardErrorCode;
  const auto* brand = findCardBrand(card.pan);
  const auto brandName = brand ? std::string(brand->name) : "";
  const auto codeLength = brand ? brand->securityCodeLength : 0;
  const auto& [pan, expiryMonth, expiryYear, cvv, cardHolder, useCase] = card;
  const bool isMonth = expiryMonth.size() == 2 && allDigits(expiryMonth) && expiryMonth >= "01" &&
                       expiryMonth <= "12";
  const bool isYear = expiryYear.size() == 4 && allDigits(expiryYear);
  const std::pair<bool, BrokenRule> rules[] = {
      {!pan.empty(), {Code::numberMissing, "The card number is missing.", "pan is empty"}},
      {allDigits(pan),
       {Code::numberNotDigits, "The card number may hold digits only.",
        "pan holds characters other than digits, blanks and hyphens"}},
      {brand != nullptr,
       {Code::brandUnknown, "Cards of this kind are not known; check the card number.",
        "pan begins with no known issuer range"}},
      {brand && brand->allowsLength(pan.size()),
       {Code::numberLength, "The card number is too short or too long.",
        "pan has a length that the brand " + brandName + " does not have"}},
      {isCardNumber(pan),
       {Code::numberChecksum, "The card number is not right; check its digits.",
        "pan does not pass the Luhn test"}},
      {isMonth,
       {Code::expiryMonth, "The expiry month must lie between 1 and 12.",
        "expiryMonth is not a month"}},
      {isYear,
       {Code::expiryYear, "The expiry year must have two or four digits.",
        "expiryYear is not a year"}},
      {isMonth && isYear && !hasExpired(expiryMonth, expiryYear, month),
       {Code::expired, "The card has expired.", "the expiry lies in the past"}},
      {allDigits(cvv) && cvv.size() == codeLength,
       {Code::securityCode,
        "The security code of this card has " + std::to_string(codeLength) + " digits.",
        "cvv does not have " + std::to_string(codeLength) + " digits"}},
      {!isBlank(cardHolder),
       {Code::cardHolder, "The name of the card holder is missing.",
        "cardHolder is empty or blank"}}};
  for (const auto& [isKept, rule] : rules) {
    if (!isKept) return rule;
  }
  return std::nullopt;
}

bool isCardNumber(std::string_view digits) {
  const auto* brand = findCardBrand(digits);
  return allDigits(digits) && brand && brand->allowsLength(digits.size()) &&
         (!brand->hasLuhn || passesLuhn(digits));
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
