#include <gtest/gtest.h>

#include <set>
#include <tuple>

#include "Sandbox/Cards/CardBrands.h"
#include "Sandbox/Cards/CardRules.h"
#include "Tests/Sandbox/SandboxTest.h"

namespace hlv::sandbox {
namespace {

class CardRulesTest : public SandboxTest {
 protected:
  CardFields valid() const { return findTestCard("visa")->fields; }

  /// The code with which a card refuses itself, or 0.
  static std::int64_t codeOf(const CardFields& fields) {
    ErrorPtr error;
    return EnteredCard::make(fields)->isValid(&error) ? 0 : error->code();
  }
};

TEST_F(CardRulesTest, TheLongestIssuerRangeNamesTheBrand) {
  const std::pair<const char*, const char*> rows[] = {
      {"4111111111111111", "visa"},
      {"4011780000000000", "elo"},
      {"4029180000000000", "naranja"},
      {"2223003122003222", "mastercard"},
      {"2200000000000000", "mir"},
      {"5105105105105100", "mastercard"},
      {"371449635398431", "american-express"},
      {"38520000023237", "diners-club"},
      {"6011000990139424", "discover"},
      {"6062820000000000", "hipercard"},
      {"3530111333300000", "jcb"},
      {"6221261111117766", "unionpay"},
      {"6759411100000008", "maestro"},
      {"5061270000000000", "verve"},
      {"6500330000000000", "elo"},
      {"6500520000000000", "troy"},
      {"9792000000000000", "troy"},
      {"6370950000000000", "hiper"},
  };
  for (const auto& [number, name] : rows) {
    const auto* brand = findCardBrand(number);
    ASSERT_TRUE(brand) << name;
    EXPECT_EQ(brand->name, name);
  }
  for (const char* number : {"", "0000000000000000", "1234567890123456", "3", "letters"}) {
    EXPECT_EQ(findCardBrand(number), nullptr);
  }
}

TEST_F(CardRulesTest, EachRuleHasACodeOfItsOwnAndTheFirstBrokenOneSpeaks) {
  const auto with = [this](const auto& change) {
    auto fields = valid();
    change(fields);
    return fields;
  };
  const std::pair<CardFields, CardErrorCode> rows[] = {
      {with([](auto& card) { card.pan = " - "; }), CardErrorCode::numberMissing},
      {with([](auto& card) { card.pan = "4111x11111111111"; }), CardErrorCode::numberNotDigits},
      {with([](auto& card) { card.pan = "1111111111111111"; }), CardErrorCode::brandUnknown},
      {with([](auto& card) { card.pan = "41111111111111111"; }), CardErrorCode::numberLength},
      {with([](auto& card) { card.pan = "4111111111111112"; }), CardErrorCode::numberChecksum},
      {with([](auto& card) { card.expiryMonth = "13"; }), CardErrorCode::expiryMonth},
      {with([](auto& card) { card.expiryMonth = "0"; }), CardErrorCode::expiryMonth},
      {with([](auto& card) { card.expiryMonth = "1a"; }), CardErrorCode::expiryMonth},
      {with([](auto& card) { card.expiryYear = "203"; }), CardErrorCode::expiryYear},
      {with([](auto& card) { card.expiryYear = ""; }), CardErrorCode::expiryYear},
      {with([](auto& card) { card.cvv = "98"; }), CardErrorCode::securityCode},
      {with([](auto& card) { card.cvv = "98x"; }), CardErrorCode::securityCode},
      {with([](auto& card) { card.cvv = "9876"; }), CardErrorCode::securityCode},
      {with([](auto& card) { card.cardHolder = " \t"; }), CardErrorCode::cardHolder},
      {with([](auto& card) { card.useCase = "Default"; }), CardErrorCode::useCase},
  };
  for (const auto& [fields, code] : rows) {
    ErrorPtr error;
    ASSERT_FALSE(EnteredCard::make(fields)->isValid(&error)) << static_cast<int>(code);
    EXPECT_EQ(error->domain(), paymentErrorDomain);
    EXPECT_EQ(error->code(), static_cast<int>(code));
    const auto texts = *error->localizedDescription() + *error->developerMessage();
    EXPECT_EQ(texts.find("1111"), std::string::npos) << texts;
    EXPECT_EQ(texts.find("98"), std::string::npos) << texts;
  }
  EXPECT_FALSE(EnteredCard::make(rows[0].first)->isValid(nullptr));
}

TEST_F(CardRulesTest, ACardLastsUntilItsMonthIsOver) {
  auto card = valid();
  const std::tuple<const char*, const char*, bool> rows[] = {
      {"07", "2031", true}, {"6", "31", false}, {"12", "2030", false}, {"1", "32", true}};
  for (const auto& [month, year, isGood] : rows) {
    card.expiryMonth = month;
    card.expiryYear = year;
    EXPECT_EQ(codeOf(card), isGood ? 0 : static_cast<int>(CardErrorCode::expired)) << month << year;
  }
}

TEST_F(CardRulesTest, FieldsAnswerInTheFormInWhichTheProviderKeepsThem) {
  auto fields = valid();
  fields.pan = "4111-1111 1111 1111";
  fields.expiryMonth = "9";
  fields.expiryYear = "33";
  const auto card = EnteredCard::make(fields);
  EXPECT_TRUE(card->isValid(nullptr));
  EXPECT_EQ(card->pan(), "4111111111111111");
  EXPECT_EQ(card->expiryMonth(), "09");
  EXPECT_EQ(card->expiryYear(), "2033");
}

TEST_F(CardRulesTest, UnionPayAloneNeedsNoChecksum) {
  auto card = valid();
  card.pan = "6222988812340000";
  EXPECT_EQ(codeOf(card), 0);
  card.pan = "5555555555554445";
  EXPECT_EQ(codeOf(card), static_cast<int>(CardErrorCode::numberChecksum));
}

TEST_F(CardRulesTest, EveryTestCardIsValidAndKnownByItsLastFourDigits) {
  std::set<std::string> lastDigits;
  for (const auto& card : testCards()) {
    EXPECT_EQ(codeOf(card.fields), 0) << card.name;
    EXPECT_TRUE(lastDigits.insert(lastFourDigits(card.fields.pan)).second) << card.name;
  }
  EXPECT_EQ(findTestCard("amex")->fields.cvv.size(), 4U);
  EXPECT_EQ(findTestCard("nonesuch"), nullptr);
}

}  // namespace
}  // namespace hlv::sandbox
