// Whatever a person types as a card, one field a line. Inputs have one bit of each character
// turned, so that neither the corpus nor the dump of a find shows a card number.
#include <gtest/gtest.h>

#include <sstream>

#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Cards/CardRules.h"
#include "Sandbox/Masking/MaskedText.h"

namespace hlv::sandbox {
namespace {

std::string digitsOf(std::string text) {
  std::erase_if(text, [](char character) { return character < '0' || character > '9'; });
  return text;
}

/// The code with which a card refuses itself, or 0.
std::int64_t verdictOn(const CardFields& fields) {
  const auto broken = EnteredCard::make(fields)->brokenRule(std::chrono::year(2031) / 7);
  if (!broken) return 0;
  const auto completed = broken->sentence + broken->detail;
  EXPECT_LT(digitsOf(completed).size(), 4U);
  EXPECT_TRUE(digitsOf(fields.cvv).size() < 3 || completed.find(fields.cvv) == std::string::npos);
  return static_cast<std::int64_t>(broken->code);
}

/// Of any text at all.
void checkMask(const std::string& typed) {
  const auto masked = maskedText(typed);
  EXPECT_EQ(holdsCardNumber(typed), masked != typed);
  EXPECT_FALSE(holdsCardNumber(masked));
  std::size_t digits = 0;
  for (const char character : masked) {
    digits = character < '0' || character > '9' ? 0 : digits + 1;
    EXPECT_LT(digits, 12U);
  }
}

void check(CardFields fields) {
  auto kept = normalised(fields);
  const auto size = kept.pan.size();
  if (size >= 12 && digitsOf(kept.pan) == kept.pan) {
    EXPECT_TRUE(digitsOf(maskedText(fields.pan)) == kept.pan.substr(size - 4));
  }
  const auto verdict = verdictOn(fields);
  EXPECT_EQ(verdictOn(kept), verdict);
  fields.pan.clear();
  for (const char digit : kept.pan) fields.pan += std::string(" ") + digit + "-";
  EXPECT_EQ(verdictOn(fields), verdict);
  if (verdict != 0) return;
  EXPECT_TRUE(size >= 12 && size <= 19 && kept.expiryYear + kept.expiryMonth >= "203107");
  // No checksum survives the change of a digit.
  kept.pan.back() ^= 1;
  EXPECT_TRUE(verdictOn(kept) != 0 || findCardBrand(kept.pan)->name == "unionpay");
}

}  // namespace
}  // namespace hlv::sandbox

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hlv::sandbox;
  GTEST_FLAG_SET(break_on_failure, true);
  std::string typed(data, data + size);
  for (char& character : typed) character ^= 0x40;
  checkMask(typed);
  std::istringstream lines(typed);
  CardFields card;
  auto& [pan, month, year, cvv, holder, useCase] = card;
  for (auto* field : {&pan, &month, &year, &cvv, &holder, &useCase}) std::getline(lines, *field);
  check(card);
  return 0;
}
