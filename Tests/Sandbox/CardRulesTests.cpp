#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Cards/CardRules.h"
#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::sandbox {
namespace {

using CardRules = SandboxTest;

TEST_F(CardRules, TheLongestIssuerRangeNamesTheBrand) {
  std::istringstream rows(
      "4111111111111111 visa 4011780000000000 elo 2223003122003222 mastercard 2200000000000000 mir "
      "38520000023237 diners-club 6011000990139424 discover 6221261111117766 unionpay "
      "6759411100000008 maestro 5061270000000000 verve 6500520000000000 troy");
  for (std::string number, name; rows >> number >> name;) {
    const auto* brand = findCardBrand(number);
    ASSERT_TRUE(brand) << name;
    EXPECT_EQ(brand->name, name);
  }
  for (const char* number : {"", "0000000000000000", "1234567890123456", "3", "letters"}) {
    EXPECT_EQ(findCardBrand(number), nullptr);
  }
}

TEST_F(CardRules, EachHasACodeOfItsOwnAndTheFirstBrokenOneSpeaks) {
  const struct {
    std::string CardFields::*field;
    const char* typed;
    CardErrorCode code;
  } rows[] = {
      {&CardFields::pan, " - ", CardErrorCode::numberMissing},
      {&CardFields::pan, "4111x11111111111", CardErrorCode::numberNotDigits},
      {&CardFields::pan, "1111111111111111", CardErrorCode::brandUnknown},
      {&CardFields::pan, "41111111111111111", CardErrorCode::numberLength},
      {&CardFields::pan, "4111111111111112", CardErrorCode::numberChecksum},
      {&CardFields::expiryMonth, "13", CardErrorCode::expiryMonth},
      {&CardFields::expiryMonth, "1a", CardErrorCode::expiryMonth},
      {&CardFields::expiryYear, "203", CardErrorCode::expiryYear},
      {&CardFields::expiryYear, "2020", CardErrorCode::expired},
      {&CardFields::cvv, "98", CardErrorCode::securityCode},
      {&CardFields::cvv, "9876", CardErrorCode::securityCode},
      {&CardFields::cardHolder, " \t", CardErrorCode::cardHolder},
      {&CardFields::useCase, "Default", CardErrorCode::useCase},
  };
  for (const auto& [field, typed, code] : rows) {
    auto card = findTestCard("visa")->fields;
    card.*field = typed;
    ErrorPtr error;
    ASSERT_FALSE(EnteredCard::make(card)->isValid(&error)) << static_cast<int>(code);
    EXPECT_EQ(nameOf(error), paymentErrorDomain + (" " + std::to_string(static_cast<int>(code))));
    const auto texts = *error->localizedDescription() + *error->developerMessage();
    EXPECT_EQ(texts.find("1111"), std::string::npos) << texts;
    EXPECT_EQ(texts.find("98"), std::string::npos) << texts;
  }
}

TEST_F(CardRules, ACardLastsUntilItsMonthIsOverAndAnswersAsTheProviderKeepsIt) {
  auto fields = findTestCard("visa")->fields;
  fields.pan = "4111-1111 1111 1111";
  fields.expiryMonth = "7";
  fields.expiryYear = "31";
  const auto card = EnteredCard::make(fields);
  EXPECT_FALSE(card->brokenRule(std::chrono::year(2031) / 7));
  EXPECT_TRUE(card->brokenRule(std::chrono::year(2031) / 8));
  EXPECT_TRUE(card->pan() == findTestCard("visa")->fields.pan);
  EXPECT_EQ(card->expiryMonth(), "07");
  EXPECT_EQ(card->expiryYear(), "2031");
  std::set<std::string> lastDigits;
  for (const auto& known : testCards()) {
    EXPECT_TRUE(lastDigits.insert(lastFourDigits(known.fields.pan)).second) << known.name;
  }
}

}  // namespace
}  // namespace hlv::sandbox
