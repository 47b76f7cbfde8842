// Which instrument stands for a card.
#include "Matching/HLVSDKPaylevenPaymentInstrumentFinder.h"
#include "Tests/Support/KitTest.h"

namespace hlv::testing {
namespace {

using Finder = HLVSDKPaylevenPaymentInstrumentFinder;
using Instruments = List<PLVCreditCardPaymentInstrument>;

class FinderTest : public KitTest {
 protected:
  bool matchesDigits(const NullableString& digits = "1111", const NullableString& brand = "visa") {
    return Finder::findPaylevenPaymentInstrumentIn(Instruments{instrument}, digits, brand) !=
           nullptr;
  }
  bool matchesCard() {
    return Finder::findPaylevenPaymentInstrumentIn(Instruments{instrument}, card) != nullptr;
  }
};

TEST_F(FinderTest, TheLastOfSeveralMatchesWins) {
  const auto other = std::make_shared<FakeInstrument>();
  other->brand = "mastercard";
  const auto last = std::make_shared<FakeInstrument>();
  const Instruments list{other, instrument, nullptr, last, other};
  EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(list, "1111", "visa"), last);
  EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(list, card), last);
  EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(Instruments(), card), nullptr);
  EXPECT_EQ(host->takeTrace(), "");
}

TEST_F(FinderTest, EveryFieldCountsExactly) {
  EXPECT_TRUE(matchesDigits());
  EXPECT_TRUE(matchesDigits(""));
  EXPECT_FALSE(matchesDigits("1112"));
  EXPECT_FALSE(matchesDigits("1111", "VISA"));
  EXPECT_TRUE(matchesCard());
  card->month = "9";
  EXPECT_FALSE(matchesCard()) << "no leading zero, no match";
  card->month = "09";
  card->year.reset();
  EXPECT_FALSE(matchesCard());
  instrument->year.reset();
  EXPECT_FALSE(matchesCard()) << "a missing year does not equal a missing year";
  card->year = instrument->year = "2031";
  instrument->stateNumber = 1;
  EXPECT_FALSE(matchesCard());
  EXPECT_FALSE(matchesDigits());
}

TEST_F(FinderTest, AShortNumberIsItsOwnLastDigits) {
  card->number = "111";
  EXPECT_TRUE(matchesCard());
  card->number = "";
  EXPECT_TRUE(matchesCard()) << "every number ends with no digits";
  card->number.reset();
  EXPECT_FALSE(matchesCard());
}

TEST_F(FinderTest, DigitsOfOtherScriptsAreCountedAsCharacters) {
  card->number = "٤١١١١١١١١١١١٢٣٤٥";
  instrument->number = "**** ٢٣٤٥";
  const auto endsAlike = std::make_shared<FakeInstrument>();
  endsAlike->number = "**** ٩٩٤٥";
  EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(Instruments{instrument, endsAlike}, card),
            instrument);
}

TEST_F(FinderTest, OnlyTheFirstMissingArgumentIsAsserted) {
  EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(std::nullopt, std::nullopt, std::nullopt),
            nullptr);
  EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(std::nullopt, "1111", std::nullopt), nullptr);
  EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(Instruments(), "1111", std::nullopt), nullptr);
  EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(std::nullopt, nullptr), nullptr);
  EXPECT_EQ(Finder::findPaylevenPaymentInstrumentIn(std::nullopt, card), nullptr);
  EXPECT_EQ(host->takeTrace(),
            "assert parameter lastFourDigits: nil\n"
            "assert parameter paylevenInstruments: nil\n"
            "assert parameter brand: nil\n"
            "assert parameter halvoInstrument: nil\n"
            "assert parameter paylevenInstruments: nil");
}

}  // namespace
}  // namespace hlv::testing
