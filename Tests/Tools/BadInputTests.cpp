#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "Sandbox/Store/StoreLock.h"
#include "Tests/Secrecy/CardDataSearch.h"
#include "Tests/Tools/Command.h"

namespace hlv {
namespace {

using testing::Command;

const std::string visaNumber = "4111111111111111";
const std::string typedCard = "add --month 12 --year 2099 --holder Guest";

TEST(ToolBadInput, GetsOneClearSentenceAndChangesNothing) {
  const struct {
    std::string line, input;
    int status;
    /// What standard error says (usage), or the outcome (an error of the operation).
    const char* says;
  } rows[] = {
      {typedCard, "4111letters11111\n123\n", 1, "The card was not added."},
      {"orphan --test-card declined", "", 1, "The card was declined."},
      {"fault arm addPaymentInstrument stalled; add --test-card amex", "", 1,
       "the service never answered addPaymentInstrument (armed fault 1)"},
      {typedCard, "", 2, "No card number was given"},
      {typedCard, visaNumber + "\n", 2, "No security code was given"},
      {"add --test-card nobody", "", 2, "no test card of that name"},
      {"add 4111-1111-1111-1111", "", 2, "looks like a card number"},
      {"add 4111\u2009１１１１\u00a01111_1111", "", 2, "looks like a card number"},
      {"add --cvv 907", "", 2, "The option --cvv is not known"},
      {"crads", "", 2, "'crads' is not known; did you mean `paylevenkit cards`"},
      {"907", "", 2, "A command is needed"},
      {"trace --last 4111111111111112", "", 2, "Value ************1112 not in range"},
      {"--seed 18446744073709551616 cards", "", 2, "A whole number from 0 on is needed"},
      {"reset", "", 2, "--yes"},
      {"sandbox list", "", 2, "Say --provider URL"},
      {"--store \"\" cards", "", 2, "A store has a name"},
  };
  Command command(Command::guestWithCard);
  for (const auto& bad : rows) {
    // By its number, since some lines look like card data.
    SCOPED_TRACE(&bad - rows);
    const auto look = [&] {
      return bad.status == 2 ? testing::contentOf(command.store()) : command.run("cards").out;
    };
    const auto before = look();

    const auto finished = command.run(bad.line, bad.input);
    // Neither a number nor a code that was typed at the wrong place is repeated.
    ASSERT_EQ(testing::CardDataSearch(visaNumber, "907").in(finished.out + finished.err),
              std::nullopt);
    EXPECT_EQ(finished.status, bad.status) << finished.out << finished.err;
    const auto& text = bad.status == 2 ? finished.err : finished.out;
    EXPECT_NE(text.find(bad.says), std::string::npos) << text;
    EXPECT_EQ(bad.status == 2 ? finished.out : finished.err, "");
    if (bad.status == 2) {
      EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
      EXPECT_TRUE(text.ends_with(".\n")) << text;
    }
    EXPECT_TRUE(look() == before);
  }
}

TEST(ToolUsage, ErrorsAreADocumentWhereOneIsExpectedAndLeaveNoNewStore) {
  for (const char* line : {"add --fly", "cards", "sign-in nobody", "demo --provider x"}) {
    Command command;
    const auto finished = command.run(std::string("--json ") + line);
    EXPECT_EQ(finished.status, 2) << line;
    EXPECT_EQ(finished.document()["error"]["number"], 2) << line;
    EXPECT_TRUE(finished.document()["error"]["message"].is_string()) << line;
    EXPECT_FALSE(std::filesystem::exists(command.store())) << line;
    EXPECT_FALSE(std::filesystem::exists(command.store() + ".log")) << line;
  }
  Command command(Command::guest);
  EXPECT_EQ(command.run("--json add --without card").document()["error"]["number"], 1);
  const auto armed = command.run("--json fault arm addPaymentInstrument error").document();
  EXPECT_EQ(armed["fault"]["number"], 1);
  const auto longNumbers = "--seed 1234567890123 --store \"" + command.folder().string() +
                           "/run-20261122075301.sqlite\" " + Command::guest;
  EXPECT_EQ(command.run(longNumbers).status, 0) << "that no card has";
  Command besideAnother;
  const int folder = ::open(besideAnother.folder().c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(folder, LOCK_SH), 0);
  EXPECT_EQ(besideAnother.run("cards").status, 2);
  EXPECT_TRUE(std::filesystem::exists(besideAnother.store())) << "which the other may work on";
  ::close(folder);
}

TEST(ToolOutput, ThatCannotBeWrittenIsAFailure) {
  Command command(Command::guest);
  std::filesystem::remove(command.folder() / "out");
  std::filesystem::create_symlink("/dev/full", command.folder() / "out");
  for (const std::string line : {"cards", "--help", "sign-out --json"}) {
    EXPECT_EQ(command.run(line).status, 1) << line;
  }
}

TEST(ToolOutput, SuitsTheTerminal) {
  Command command(Command::guest + "; add --test-card visa --holder A\x1b[31m");
  const auto shown = command.run("cards").out;
  EXPECT_NE(shown.find("A\\x1b[31m"), std::string::npos) << shown;
  EXPECT_EQ(shown.find('\x1b'), std::string::npos) << shown;
  ::setenv("COLUMNS", "40", 1);
  EXPECT_NE(command.run("cards").out.find("…\n"), std::string::npos);
  ::unsetenv("COLUMNS");
  ::setenv("LC_ALL", "C", 1);
  const auto plain = command.run("sync").out;
  EXPECT_NE(plain.find("visa **** 1111"), std::string::npos) << plain;
  EXPECT_TRUE(std::all_of(plain.begin(), plain.end(), [](char byte) { return byte > 0; })) << plain;
}

TEST(ToolReset, KeepsWhatIsNoStoreAndRemovesOneOfAnotherVersion) {
  Command letter, newer(Command::guest);
  std::ofstream(letter.store()) << "a letter to a friend, and long enough to be looked at twice, "
                                   "with one more line of it to come";
  // SQLite keeps the application's version in the bytes 60 to 63 of its header.
  std::fstream(newer.store(), std::ios::in | std::ios::out | std::ios::binary)
      .seekp(60)
      .write("\0\0\0\x63", 4);
  for (auto* command : {&letter, &newer}) {
    const bool isStore = command == &newer;
    EXPECT_EQ(command->run("cards").status, 2);
    EXPECT_EQ(command->run("reset --yes").status, isStore ? 0 : 2);
    EXPECT_NE(std::filesystem::exists(command->store()), isStore);
  }
}

TEST(ToolReset, TakesAllThatAServerLeavesAndNothingWhileOneWorksOnTheStore) {
  Command command(Command::guest);
  for (const auto* file : {"-wal", "-shm", ".log", ".ports.json", ".ports.json.new",
                           ".sandboxes/a.sqlite", ".sandboxes/snapshots/b.sqlite"}) {
    const std::filesystem::path path = command.store() + file;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << "left by a server";
  }
  {
    const auto server = sandbox::lockStore(command.store()).value();
    for (const auto* line : {"reset --yes", "serve"}) {
      const auto refused = command.run(line);
      EXPECT_EQ(refused.status, 2);
      EXPECT_EQ(refused.err,
                "paylevenkit: Another server works on the store '" + command.store() + "'.\n");
    }
    for (const auto* file : {".sandboxes/a.sqlite", ".ports.json.new"}) {
      EXPECT_TRUE(std::filesystem::exists(command.store() + file)) << file;
    }
  }
  EXPECT_EQ(command.run("reset --yes").status, 0);
  for (const auto& left : std::filesystem::directory_iterator(command.folder())) {
    EXPECT_FALSE(left.path().filename().string().starts_with("store.sqlite")) << left.path();
  }
}

}  // namespace
}  // namespace hlv
