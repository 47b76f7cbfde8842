// What services read as JSON, and what they refuse to.
#include <gtest/gtest.h>

#include <functional>

#include "Sandbox/Cards/TestCards.h"
#include "Sandbox/JSON/CardRecords.h"
#include "Sandbox/JSON/FaultRecords.h"
#include "Sandbox/JSON/InstrumentRecords.h"
#include "Sandbox/JSON/SandboxRecords.h"

namespace hlv::sandbox {
namespace {

/// The code with which `read` refuses, or an empty string.
std::string codeOf(const std::function<void()>& read) {
  try {
    read();
    return "";
  } catch (const InvalidRecord& invalid) {
    return invalid.code();
  }
}

TEST(Records, AMemberOfAnotherTypeIsRefusedByItsName) {
  const Json json = {{"text", "x"},  {"number", 1},     {"huge", UINT64_MAX},   {"half", 0.5},
                     {"flag", true}, {"none", nullptr}, {"list", Json::array()}};
  EXPECT_EQ(textIn(json, "none"), std::nullopt);
  EXPECT_EQ(textIn(json, "nowhere"), std::nullopt);
  EXPECT_EQ(integerIn(json, "nowhere"), std::nullopt);
  EXPECT_EQ(nullableListIn(json, "none"), nullptr);
  const std::function<void()> refused[] = {
      [&] { textIn(json, "number"); },          [&] { requiredTextIn(json, "none"); },
      [&] { requiredTextIn(json, "nowhere"); }, [&] { nullableTextIn(json, "nowhere"); },
      [&] { integerIn(json, "text"); },         [&] { integerIn(json, "huge"); },
      [&] { integerIn(json, "half"); },         [&] { integerIn(json, "none"); },
      [&] { flagIn(json, "number"); },          [&] { requiredFlagIn(json, "nowhere"); },
      [&] { objectIn(json, "list"); },          [&] { listIn(json, "flag"); },
      [&] { nullableListIn(json, "nowhere"); }, [] { requiredTextIn(Json(1), "x"); },
  };
  for (const auto& read : refused) EXPECT_EQ(codeOf(read), "wrong-type");
  try {
    textIn(json, "number");
  } catch (const InvalidRecord& invalid) {
    EXPECT_STREQ(invalid.what(), "The member 'number' is no text.");
  }
}

TEST(Records, EveryRecordIsReadAsItWasWritten) {
  BackendCard card{"crd_a", "visa", "1111", "default", "ins_a", "Erika", "12", "2030", {}};
  card.billingAddress.city = "Köln";
  for (const auto& cards :
       {std::optional(std::vector{card, card}), std::optional(std::vector<BackendCard>()),
        std::optional<std::vector<BackendCard>>()}) {
    const auto json = jsonOf(BackendGuest{"a@b", 7, std::nullopt, cards});
    EXPECT_EQ(json.contains("credit_cards"), cards.has_value());
    EXPECT_EQ(jsonOf(guestIn(json)), json);
  }
  const ProviderInstrument instrument{std::nullopt, "visa", "•••• 1111", "private", "12",
                                      "2030",       2};
  EXPECT_EQ(jsonOf(instrumentIn(jsonOf(instrument))), jsonOf(instrument));
  const auto [number, listed] = listedInstrumentIn(listedJson(9, instrument), "private");
  EXPECT_EQ(number, 9);
  EXPECT_EQ(jsonOf(listed), jsonOf(instrument));
  NewSandbox options;
  options.seed = UINT64_MAX;
  options.clock = "2030-01-01T00:00:00Z";
  EXPECT_EQ(jsonOf(newSandboxIn(jsonOf(options))), jsonOf(options));
  for (const char* broken : {"[]", "{}", "{\"credit_cards\":{}}", "1", "null"}) {
    const auto json = Json::parse(broken);
    EXPECT_NE(codeOf([&] { guestIn(json); }), "") << broken;
    EXPECT_NE(codeOf([&] { instrumentIn(json); }), "") << broken;
    EXPECT_NE(codeOf([&] { faultIn(json); }), "") << broken;
    EXPECT_NE(codeOf([&] { sandboxIn(json); }), "") << broken;
  }
}

TEST(Records, AFaultKeepsWhatAChangeLeavesOut) {
  const auto fault = newFaultIn(Json::parse(
      R"({"operation":"addCreditCardForGuest","kind":"error","status":429,"times":2,)"
      R"("headers":{"Retry-After":"3"},"distribution":"normal","use_case":"private"})"));
  EXPECT_EQ(fault.remaining, 2);
  EXPECT_EQ(fault.headers.at(0).second, "3");
  EXPECT_EQ(changedFault(fault, Json::object()), fault);
  const auto changed =
      changedFault(fault, Json::parse(R"({"times":null,"status":null,"use_case":null})"));
  EXPECT_EQ(changed.remaining, std::nullopt);
  EXPECT_EQ(changed.status, std::nullopt);
  EXPECT_EQ(changed.useCase, std::nullopt);
  EXPECT_EQ(changed.distribution, Distribution::normal);
}

TEST(Records, ANewCardIsTakenAndWhatStoodThereIsGone) {
  const auto& fields = findTestCard("visa")->fields;
  Json request = {{"credit_card", newCardJson(*EnteredCard::make(fields))}, {"email", "a@b"}};
  const auto taken = takeNewCard(request);
  EXPECT_TRUE(taken.pan == fields.pan && taken.cvv == fields.cvv);
  EXPECT_EQ(taken.cardHolder, fields.cardHolder);
  for (const auto& [key, text] : request["credit_card"].items()) EXPECT_TRUE(text == "") << key;
  request["credit_card"]["pin"] = 1;
  EXPECT_EQ(codeOf([&] { takeNewCard(request); }), "unknown-member");
}

}  // namespace
}  // namespace hlv::sandbox
