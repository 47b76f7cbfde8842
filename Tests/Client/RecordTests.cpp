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
