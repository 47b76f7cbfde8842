// What services read as JSON.
#include <gtest/gtest.h>

#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/JSON/CardRecords.h"
#include "Sandbox/JSON/InstrumentRecords.h"

namespace hlv::sandbox {
namespace {

TEST(Records, ANewCardIsTakenAndWhatStoodThereIsGone) {
  const auto& fields = findTestCard("visa")->fields;
  Json request = {{"credit_card", newCardJson(*EnteredCard::make(fields))}, {"email", "a@b"}};
  const auto taken = takeNewCard(request);
  EXPECT_TRUE(taken.pan == fields.pan && taken.cvv == fields.cvv);
  EXPECT_EQ(taken.cardHolder, fields.cardHolder);
  for (const auto& [key, text] : request["credit_card"].items()) EXPECT_TRUE(text == "") << key;
}

}  // namespace
}  // namespace hlv::sandbox
