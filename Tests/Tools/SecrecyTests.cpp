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

TEST(ToolSecrecy, NoNumberAndNoCodeIsLeftAnywhereByAWholeDemoWithAllLoggingOn) {
  std::vector<CardDataSearch> searches;
  for (const auto& card : sandbox::testCards()) searches.emplace_back(card.fields.pan, "");
  std::string typed;
  for (const auto& [number, code] : typedCards) {
    typed += std::string(number) + "\n" + code + "\n";
    searches.emplace_back(number, code);
  }
  Command command;
  std::vector<std::pair<std::string, std::string>> left;
  const auto say = [&](const std::string& line, const std::string& input = {}) {
    const auto finished = command.run(line, input);
    left.emplace_back("the output of " + line, finished.out + finished.err);
    return finished;
  };
  const auto shown = say("--console-log demo --typed", typed);
  ASSERT_EQ(shown.status, 0) << "the demo failed";
  ASSERT_NE(shown.err.find("synchronized"), std::string::npos) << "nothing was logged";
  ASSERT_NE(shown.out.find("8431"), std::string::npos) << "the typed card was not used";

  for (const char* card : {"mastercard", "declined", "no-token"}) {
    say(std::string("add --json --console-log --test-card ") + card);
  }
  say("add --month 12 --year 2099 --holder Guest", "3714 4963 5398 430\n7913\n");
  say("trace --last 99");
  say("cards --json");
  for (const auto& file : std::filesystem::directory_iterator(command.folder())) {
    // What the test itself typed is not left behind by the command.
    if (file.path().filename() == "in") continue;
    left.emplace_back(file.path().filename(), testing::contentOf(file.path()));
  }
  for (const auto& [name, text] : left) {
    for (const auto& search : searches) EXPECT_EQ(search.in(text), std::nullopt) << name;
  }
}

}  // namespace
}  // namespace hlv
