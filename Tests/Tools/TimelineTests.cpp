#include <gtest/gtest.h>

#include "Tests/Tools/Command.h"

namespace hlv {
namespace {

using nlohmann::json;
using testing::Command;

TEST(ToolTimeline, SurvivesFromProcessToProcessUntilBothSidesAgree) {
  Command command(Command::guest);
  const auto succeeds = [&](const std::string& line) {
    const auto finished = command.run(line + " --json");
    EXPECT_EQ(finished.status, 0) << line << ": " << finished.out << finished.err;
    return finished.document();
  };
  const auto first = succeeds("add --test-card amex --street Kai --city Berlin");
  EXPECT_EQ(first["backend"][0]["brand"], "american-express");
  EXPECT_EQ(first["backend"][0]["last_four_digits"], "0005");
  EXPECT_TRUE(first["agreement"]);
  const auto second = succeeds("add --test-card mastercard --use-case business");
  EXPECT_EQ(second["provider"].size(), 2U);
  const auto updated = succeeds("update ID --city Hamburg");
  EXPECT_EQ(updated["backend"][0]["billing_address"]["city"], "Hamburg");
  EXPECT_EQ(updated["backend"][0]["billing_address"]["street"], "Kai");

  const auto deleted = succeeds("delete " + second["backend"][1]["id"].get<std::string>());
  EXPECT_EQ(deleted["backend"].size(), 1U);
  EXPECT_EQ(deleted["provider"].size(), 1U);

  for (const std::string by : {"foreground", "authorization", "reachability"}) {
    const auto orphaned = succeeds("orphan --test-card amex --use-case private");
    EXPECT_EQ(orphaned["unmatched"], 1);
    const auto synchronized = succeeds("sync --by " + by);
    EXPECT_TRUE(synchronized["agreement"]) << by;
    EXPECT_EQ(synchronized["provider"].size(), 1U) << by;
  }
}

TEST(ToolTimeline, GivesOneCompleteJSONDocumentForEveryCommand) {
  Command command;
  for (const std::string line :
       {Command::guest.c_str(), "add --test-card visa", "cards", "update no-such-card", "sync",
        "instruments", "network off", "orphan --test-card visa", "fault", "fault firings",
        "fault clear", "trace --last 4", "sign-out", "reset --yes", "demo --test-cards"}) {
    const auto document = command.run(line + " --json").document();
    for (const char* member :
         {"operation", "outcome", "error", "timeline", "backend", "provider", "agreement"}) {
      EXPECT_TRUE(document.contains(member)) << line << " lacks " << member;
    }
  }
}

TEST(ToolTimeline, ShowsTheCallsOfAnOperationInOrderWithThreadAndResult) {
  Command command(Command::guest + "; fault arm addCreditCardForGuest twice");
  const auto timeline = command.run("add --test-card visa --json").document()["timeline"];
  std::string calls;
  int answersToTheLast = 0;
  for (const auto& event : timeline) {
    const auto what = event["what"].get<std::string>().substr(0, 8);
    if (event["result"] == "") calls += what + " ";
    if (event["from"] == "backend" && what == "addCredi") ++answersToTheLast;
    EXPECT_NE(event["thread"], "") << event;
  }
  EXPECT_NE(calls.find("addPayme createUs getPayme updateCu addCredi"), std::string::npos) << calls;
  EXPECT_EQ(answersToTheLast, 2);
  // Read again later, by another process.
  const auto shown = command.run("trace --json").document()["operations"];
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0]["events"], timeline);
  // What only lists something shows the two sides too.
  EXPECT_EQ(command.run("fault --json").document()["backend"].size(), 1U);
}

TEST(ToolTimeline, OfTheDemoEndsInAgreementOrAtTheFirstStepThatFails) {
  Command command;
  const auto finished = command.run("demo");
  EXPECT_EQ(finished.status, 0) << finished.out << finished.err;
  EXPECT_NE(finished.out.find("1 does not match."), std::string::npos);
  EXPECT_TRUE(finished.out.ends_with("Both sides agree.\n")) << finished.out;
  EXPECT_EQ(command.run("demo").status, 2) << "a store that is there is not a fresh one";
  const auto stopped = Command().run("demo --typed --json", "4242 not a number\n123\n");
  EXPECT_EQ(stopped.status, 1);
  EXPECT_EQ(stopped.document()["steps"].size(), 2U);
  EXPECT_EQ(stopped.document()["outcome"], "failed");
}

TEST(ToolTimeline, IsReadBackFromTheUsersDataFolderWhichIsTheirsAlone) {
  Command command;
  command.useDataFolder();
  EXPECT_EQ(command.run(Command::guest).status, 0);
  const auto folder = command.folder() / "paylevenkit";
  ASSERT_TRUE(std::filesystem::exists(folder / "store.sqlite"));
  EXPECT_EQ(std::filesystem::status(folder).permissions(), std::filesystem::perms::owner_all);
  EXPECT_EQ(command.run("reset --yes").status, 0);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

}  // namespace
}  // namespace hlv
