#include <gtest/gtest.h>

#include "Sandbox/Cards/TestCards.h"
#include "Tests/Secrecy/CardDataSearch.h"
#include "Tests/Tools/Command.h"

namespace hlv {
namespace {

using testing::CardDataSearch;
using testing::Command;

// Two published American Express numbers: their four-digit codes cannot be mistaken for the
// milliseconds of a log line.
constexpr std::pair<const char*, const char*> typedCards[] = {{"371449635398431", "7913"},
                                                              {"378734493671000", "8642"}};

/// Everything that a run left behind, by the name of its file.
std::vector<std::pair<std::string, std::string>> leftIn(const std::filesystem::path& folder) {
  std::vector<std::pair<std::string, std::string>> left;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    // What the test itself typed is not left behind by the command.
    if (file.path().filename() == "in") continue;
    left.emplace_back(file.path().filename(), testing::contentOf(file.path()));
  }
  return left;
}

TEST(ToolSecrecy, NoNumberAndNoCodeIsLeftAnywhereByAWholeDemoWithAllLoggingOn) {
  std::vector<std::pair<std::string, CardDataSearch>> searches;
  for (const auto& card : sandbox::testCards()) {
    searches.emplace_back(card.name, CardDataSearch(card.fields.pan, ""));
  }
  std::string typed;
  for (const auto& [number, code] : typedCards) {
    typed += std::string(number) + "\n" + code + "\n";
    searches.emplace_back("a typed card", CardDataSearch(number, code));
  }
  Command command;
  const auto shown = command.run("--console-log demo --typed", typed);
  ASSERT_EQ(shown.status, 0) << "the demo failed";
  ASSERT_NE(shown.err.find("synchronized"), std::string::npos) << "nothing was logged";
  ASSERT_NE(shown.out.find("8431"), std::string::npos) << "the typed card was not used";
  std::string said = shown.out + shown.err;

  // The write-ahead log stays beside the store only while a process has it open.
  command.run("fault arm getPaymentInstrumentsList delay --delay 3600000");
  command.startUntilItMeetsAFault("sync --console-log");
  command.kill();
  ASSERT_TRUE(std::filesystem::exists(command.store() + "-wal"));
  auto left = leftIn(command.folder());

  const auto say = [&](const std::string& line, const std::string& input = {}) {
    const auto finished = command.run(line, input);
    said += finished.out + finished.err;
  };
  for (const auto& card : sandbox::testCards()) {
    say("add --json --console-log --test-card " + card.name);
  }
  say("add --month 12 --year 2099 --holder Guest", "3714 4963 5398 430\n7913\n");
  say("trace --last 99");
  say("cards --json");
  left.emplace_back("what was said", said);
  for (auto& file : leftIn(command.folder())) left.push_back(std::move(file));

  for (const auto& [name, text] : left) {
    for (const auto& [card, search] : searches) {
      EXPECT_EQ(search.in(text), std::nullopt) << card << " in " << name;
    }
  }
}

}  // namespace
}  // namespace hlv
