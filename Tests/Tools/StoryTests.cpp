#include <gtest/gtest.h>
#include <stdlib.h>

#include "Tests/Tools/Command.h"

namespace hlv {
namespace {

using nlohmann::json;
using testing::Command;
using testing::Finished;

/// The only card of that use case in a JSON document.
std::string cardOf(const json& document, const std::string& useCase) {
  for (const auto& card : document["backend"]) {
    if (card["useCase"] == useCase) return card["halvoID"];
  }
  return "no card";
}

TEST(ToolStory, SurvivesFromProcessToProcessUntilBothSidesAgree) {
  Command command;
  const auto succeeds = [&](std::vector<std::string> arguments) {
    arguments.push_back("--json");
    const auto finished = command.run(arguments);
    EXPECT_EQ(finished.status, 0) << arguments.front() << ": " << finished.out << finished.err;
    return finished.document();
  };
  succeeds({"sign-in", "guest@example.com"});
  const auto first = succeeds({"add", "--test-card", "visa", "--city", "Berlin"});
  EXPECT_EQ(first["backend"].size(), 1U);
  EXPECT_TRUE(first["agreement"]);
  const auto second = succeeds({"add", "--test-card", "mastercard", "--use-case", "business"});
  EXPECT_EQ(second["provider"].size(), 2U);

  const auto updated = succeeds({"update", cardOf(second, "default"), "--city", "Hamburg"});
  EXPECT_EQ(updated["backend"][0]["billingAddress"]["city"], "Hamburg");

  const auto deleted = succeeds({"delete", cardOf(second, "business")});
  EXPECT_EQ(deleted["backend"].size(), 1U);
  EXPECT_EQ(deleted["provider"].size(), 1U);

  const auto planted = succeeds({"plant", "--test-card", "amex", "--use-case", "private"});
  EXPECT_FALSE(planted["agreement"]);
  EXPECT_EQ(planted["unmatched"], 1);

  for (const std::string by : {"foreground", "authorization", "reachability"}) {
    succeeds({"plant", "--test-card", "amex", "--use-case", "private"});
    const auto synchronized = succeeds({"sync", "--by", by});
    EXPECT_TRUE(synchronized["agreement"]) << by;
    EXPECT_EQ(synchronized["provider"].size(), 1U) << by;
  }
}

TEST(ToolStory, GivesOneCompleteJSONDocumentForEveryCommand) {
  Command command;
  const std::vector<std::vector<std::string>> lines = {{"sign-in", "guest@example.com"},
                                                       {"add", "--test-card", "visa"},
                                                       {"cards"},
                                                       {"update", "no-such-card"},
                                                       {"delete", "no-such-card"},
                                                       {"sync"},
                                                       {"instruments"},
                                                       {"foreground"},
                                                       {"network", "off"},
                                                       {"plant", "--test-card", "visa"},
                                                       {"fault"},
                                                       {"fault", "firings"},
                                                       {"fault", "clear"},
                                                       {"trace", "--last", "4"},
                                                       {"sign-out"},
                                                       {"reset", "--yes"},
                                                       {"demo", "--test-cards"}};
  for (auto line : lines) {
    line.push_back("--json");
    const auto document = command.run(line).document();
    for (const char* member :
         {"operation", "outcome", "error", "timeline", "backend", "provider", "agreement"}) {
      EXPECT_TRUE(document.contains(member)) << line.front() << " lacks " << member;
    }
  }
}

TEST(ToolStory, TellsTheCallsOfAnOperationInOrderWithThreadAndResult) {
  Command command;
  command.run({"sign-in", "guest@example.com"});
  const auto timeline =
      command.run({"add", "--test-card", "visa", "--json"}).document()["timeline"];
  std::string calls;
  for (const auto& event : timeline) {
    if (event["result"] == "") calls += event["what"].get<std::string>().substr(0, 8) + " ";
    EXPECT_NE(event["thread"], "") << event;
  }
  EXPECT_NE(calls.find("addPayme createUs getPayme updateCu addCredi"), std::string::npos) << calls;
  EXPECT_EQ(timeline.back()["to"], "app");
  EXPECT_EQ(timeline.back()["thread"], "main");
  // Told again later, by another process.
  const auto told = command.run({"trace", "--json"}).document()["operations"];
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0]["timeline"], timeline);
  // What only lists something shows the two sides too.
  EXPECT_EQ(command.run({"fault", "--json"}).document()["backend"].size(), 1U);
}

TEST(ToolStory, ShowsDomainCodeAndBothMessagesOfAnError) {
  Command command;
  command.run({"sign-in", "guest@example.com"});
  command.run({"network", "off"});
  const auto finished = command.run({"add", "--test-card", "visa"});
  EXPECT_EQ(finished.status, 1);
  EXPECT_NE(finished.out.find("HLVURLErrorDomain 1: "), std::string::npos) << finished.out;
  EXPECT_NE(finished.out.find("For the developer: "), std::string::npos) << finished.out;
}

TEST(ToolStory, ShowsACardAndAnErrorThatComeTogether) {
  Command command;
  command.run({"sign-in", "guest@example.com"});
  command.run({"fault", "arm", "updateCurrentGuestWithRequest", "error", "--delay", "1"});
  const auto finished = command.run({"add", "--test-card", "visa", "--json"});
  EXPECT_EQ(finished.status, 1);
  EXPECT_FALSE(finished.document()["error"].is_null());
  EXPECT_EQ(finished.document()["backend"].size(), 1U);
}

TEST(ToolStory, SaysWhyASynchronisationDidNothingOrFailed) {
  Command command;
  command.run({"sign-in", "guest@example.com"});
  const auto early = command.run({"sync"});
  EXPECT_EQ(early.status, 0);
  EXPECT_NE(early.out.find("the guest has no provider token yet"), std::string::npos) << early.out;

  command.run({"add", "--test-card", "visa"});
  command.run({"fault", "arm", "fetchGuestCreditCards", "error"});
  const auto failed = command.run({"sync"});
  EXPECT_EQ(failed.status, 1);
  EXPECT_NE(failed.out.find("Failed to synchronize payment instruments."), std::string::npos)
      << failed.out;
}

TEST(ToolStory, OfTheDemoEndsInAgreement) {
  Command command;
  const auto finished = command.run({"demo"});
  EXPECT_EQ(finished.status, 0) << finished.out << finished.err;
  EXPECT_NE(finished.out.find("1 does not match."), std::string::npos);
  EXPECT_TRUE(finished.out.ends_with("Both sides agree.\n")) << finished.out;
  EXPECT_EQ(command.run({"demo"}).status, 2) << "a store that is there is not a fresh one";
}

TEST(ToolStory, OfTheDemoEndsAtTheFirstStepThatFails) {
  Command command;
  const auto finished = command.run({"demo", "--typed", "--json"}, "4242 not a number\n123\n");
  EXPECT_EQ(finished.status, 1);
  EXPECT_EQ(finished.document()["steps"].size(), 2U);
  EXPECT_EQ(finished.document()["outcome"], "failed");
}

TEST(ToolStory, IsReadBackFromTheUsersDataFolderWhichIsTheirsAlone) {
  Command command;
  ::setenv("XDG_DATA_HOME", command.folder().c_str(), 1);
  // An empty path counts as none given.
  EXPECT_EQ(command.run({"--store", "", "sign-in", "guest@example.com"}).status, 0);
  const auto folder = command.folder() / "paylevenkit";
  ASSERT_TRUE(std::filesystem::exists(folder / "store.sqlite"));
  EXPECT_EQ(std::filesystem::status(folder).permissions(), std::filesystem::perms::owner_all);
  EXPECT_EQ(command.run({"--store", "", "reset", "--yes"}).status, 0);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

}  // namespace
}  // namespace hlv
