#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "Tests/Tools/Command.h"

namespace hlv {
namespace {

using testing::Command;

constexpr const char* number = "4111111111111111";

struct Bad {
  const char* name;
  std::vector<std::string> arguments;
  std::string input;
  int status;
  /// What standard error says (usage), or the outcome (an error of the operation).
  std::string says;
};

void PrintTo(const Bad& bad, std::ostream* stream) { *stream << bad.name; }

const std::vector<std::string> typedCard = {"add",  "--month",  "12",     "--year",
                                            "2099", "--holder", "A Guest"};
const std::vector<std::string> expiredCard = {"add",  "--month",  "1",      "--year",
                                              "2001", "--holder", "A Guest"};

const Bad badInputs[] = {
    {"LettersInTheNumber", typedCard, "4111letters11111\n123\n", 1, "The card was not added."},
    {"AnExpiredCard", expiredCard, std::string(number) + "\n123\n", 1, "The card was not added."},
    {"AnUnknownCardToUpdate", {"update", "nobody", "--city", "X"}, "", 1, "was not changed"},
    {"AnUnknownCardToDelete", {"delete", "nobody"}, "", 1, "The card was not deleted."},
    {"NoNumber", typedCard, "", 2, "No card number was given"},
    {"NoSecurityCode", typedCard, std::string(number) + "\n", 2, "No security code was given"},
    {"NoHolder", {"add", "--month", "12"}, number, 2, "also needs --month, --year and --holder"},
    {"AnUnknownTestCard", {"add", "--test-card", "nobody"}, "", 2, "no test card of that name"},
    {"ANumberAsAnArgument", {"add", "4111-1111-1111-1111"}, "", 2, "looks like a card number"},
    {"ASplitNumber", {"add", "4111", "1111", "1111", "1111"}, "", 2, "looks like a card number"},
    {"ANumberInAnOption", {"add", std::string("--pan=") + number}, "", 2, "looks like a card"},
    {"ACodeAsAnArgument", {"add", "--cvv", "907"}, "", 2, "The option --cvv is not known"},
    {"AnUnknownOperation", {"fault", "arm", "fly", "error"}, "", 2, "no operation"},
    {"AnUnknownFault", {"fault", "arm", "createUserToken", "fly"}, "", 2, "makes no sense"},
    {"AnUnknownNetwork", {"network", "perhaps"}, "", 2, "perhaps"},
    {"NoCommand", {}, "", 2, "A command is needed"},
    {"NoID", {"delete"}, "", 2, "ID is required"},
    {"NoConsent", {"reset"}, "", 2, "--yes"},
};

class ToolBadInput : public ::testing::TestWithParam<Bad> {};

TEST_P(ToolBadInput, GetsOneClearSentenceAndChangesNothing) {
  Command command;
  command.run({"sign-in", "guest@example.com"});
  command.run({"add", "--test-card", "visa"});
  const auto before = command.run({"cards"}).out;

  const auto& bad = GetParam();
  const auto finished = command.run(bad.arguments, bad.input);
  EXPECT_EQ(finished.status, bad.status) << finished.out << finished.err;
  const auto& text = bad.status == 2 ? finished.err : finished.out;
  EXPECT_NE(text.find(bad.says), std::string::npos) << text;
  if (bad.status == 2) {
    EXPECT_EQ(finished.out, "");
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
    EXPECT_TRUE(text.ends_with(".\n")) << text;
  } else {
    EXPECT_EQ(finished.err, "");
  }
  // Neither a number nor a code that was typed at the wrong place is repeated.
  for (const char* secret : {"11111", "1111 1111", "1111-1111", "907"}) {
    EXPECT_EQ((finished.out + finished.err).find(secret), std::string::npos) << secret;
  }
  EXPECT_EQ(command.run({"cards"}).out, before);
}

INSTANTIATE_TEST_SUITE_P(Each, ToolBadInput, ::testing::ValuesIn(badInputs),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ToolUsage, ErrorsAreADocumentWhereOneIsExpected) {
  Command command;
  const auto finished = command.run({"--json", "add", "--fly"});
  EXPECT_EQ(finished.status, 2);
  EXPECT_NE(finished.document()["error"]["localizedDescription"], nullptr);
}

TEST(ToolUsage, NeedsAGuestWhereTheKitDoes) {
  Command command;
  const std::vector<std::vector<std::string>> lines = {
      {"add", "--test-card", "visa"}, {"cards"}, {"delete", "x"}, {"sync"}};
  for (const auto& line : lines) {
    const auto finished = command.run(line);
    EXPECT_EQ(finished.status, 2) << line.front();
    EXPECT_NE(finished.err.find("Nobody is signed in"), std::string::npos) << finished.err;
  }
}

TEST(ToolStoreFile, ThatIsNotAStoreIsRefusedAndStaysAsItWas) {
  Command command;
  std::ofstream(command.store()) << "a letter to a friend, and long enough to be looked at twice, "
                                    "with one more line of it to come";
  const auto before = Command::contentOf(command.store());
  const std::vector<std::vector<std::string>> lines = {{"cards"}, {"reset", "--yes"}};
  for (const auto& line : lines) {
    const auto finished = command.run(line);
    EXPECT_EQ(finished.status, 2) << line.front();
    EXPECT_EQ(std::count(finished.err.begin(), finished.err.end(), '\n'), 1) << finished.err;
    EXPECT_EQ(Command::contentOf(command.store()), before);
  }
}

TEST(ToolStoreFile, ThatIsAFolderIsRefused) {
  Command command;
  std::filesystem::create_directory(command.store());
  EXPECT_EQ(command.run({"cards"}).status, 2);
  EXPECT_EQ(command.run({"reset", "--yes"}).status, 2);
  EXPECT_TRUE(std::filesystem::exists(command.store()));
}

TEST(ToolStoreFile, OfAnotherVersionIsRefusedAndCanBeReset) {
  Command command;
  command.run({"sign-in", "guest@example.com"});
  {
    // SQLite keeps the application's version in the bytes 60 to 63 of its header.
    std::fstream file(command.store(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(60);
    file.write("\0\0\0\x63", 4);
  }
  const auto refused = command.run({"cards"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.err.find("version 99"), std::string::npos) << refused.err;
  EXPECT_EQ(command.run({"reset", "--yes"}).status, 0);
  EXPECT_FALSE(std::filesystem::exists(command.store()));
  EXPECT_EQ(command.run({"sign-in", "guest@example.com"}).status, 0);
}

}  // namespace
}  // namespace hlv
