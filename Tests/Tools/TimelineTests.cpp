#include <gtest/gtest.h>

#include "Tests/Tools/Command.h"

namespace hlv {
namespace {

using testing::Command;

TEST(ToolTimeline, GivesOneCompleteJSONDocumentForEveryCommand) {
  Command command;
  for (const std::string line :
       {Command::guest.c_str(), "add --test-card visa", "cards", "update no-such-card",
        "orphan --test-card visa", "sync", "orphan --test-card amex", "sync --by authorization",
        "orphan --test-card amex", "sync --by reachability", "instruments", "network off", "fault",
        "fault firings", "fault clear", "trace --last 4", "sign-out", "reset --yes",
        "demo --test-cards"}) {
    const auto document = command.run(line + " --json").document();
    for (const char* member :
         {"operation", "outcome", "error", "timeline", "backend", "provider", "agreement"}) {
      EXPECT_TRUE(document.contains(member)) << line << " lacks " << member;
    }
    EXPECT_TRUE(!line.starts_with("sync") || document["agreement"]) << line;
  }
}

TEST(ToolTimeline, OfTheDemoEndsInAgreementOrAtTheFirstStepThatFails) {
  Command command;
  EXPECT_EQ(command.run("demo").status, 0) << "the manual shows what it prints";
  EXPECT_EQ(command.run("demo").status, 2) << "a store that is there is not a fresh one";
  const auto stopped = Command().run("demo --typed --json", "4242 not a number\n123\n");
  EXPECT_EQ(stopped.status, 1);
  EXPECT_EQ(stopped.document()["steps"].size(), 2U);
  EXPECT_EQ(stopped.document()["outcome"], "failed");
}

// What the command prints and leaves is searched for the cards after each line.
TEST(ToolSecrecy, HoldsForAWholeDemoOfTypedCardsWithAllLoggingOn) {
  std::string typed;
  for (const auto& [number, code] : Command::typedCards) {
    typed += std::string(number) + "\n" + code + "\n";
  }
  Command command;
  const auto shown = command.run("--console-log demo --typed", typed);
  EXPECT_EQ(shown.status, 0);
  EXPECT_NE(shown.err.find("synchronized"), std::string::npos) << "nothing was logged";
  EXPECT_NE(shown.out.find("8431"), std::string::npos) << "the typed card was not used";
  for (const auto* card : {"mastercard", "declined", "no-token"}) {
    command.run(std::string("add --json --console-log --test-card ") + card);
  }
  command.run("add --month 12 --year 2099 --holder Guest", "3714 4963 5398 430\n7913\n");
  command.run("trace --last 99; cards --json");
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
