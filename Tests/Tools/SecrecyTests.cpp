#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "Sandbox/TestCards.h"
#include "Tests/Tools/Command.h"

namespace hlv {
namespace {

using testing::Command;

// Two published American Express numbers: their four-digit codes cannot be mistaken for the
// milliseconds of a log line.
constexpr const char* typedNumbers[] = {"371449635398431", "378734493671000"};
constexpr const char* typedCodes[] = {"7913", "8642"};

std::string withoutGaps(std::string text) {
  std::erase_if(text, [](char character) { return character == ' ' || character == '-'; });
  return text;
}

/// Whether more of a number than its last four digits can be read, however it is spaced.
bool showsNumber(const std::string& text, const std::string& number) {
  constexpr std::size_t window = 8;
  const auto closed = withoutGaps(text);
  for (std::size_t i = 0; i + window <= number.size(); ++i) {
    if (closed.find(number.substr(i, window)) != std::string::npos) return true;
  }
  return text.find(number.substr(number.size() - 5)) != std::string::npos;
}

/// Whether the code stands somewhere with no digit beside it.
bool showsCode(const std::string& text, const std::string& code) {
  const auto isDigitAt = [&](std::size_t at) {
    return at < text.size() && std::isdigit(static_cast<unsigned char>(text[at]));
  };
  for (auto at = text.find(code); at != std::string::npos; at = text.find(code, at + 1)) {
    if (!isDigitAt(at - 1) && !isDigitAt(at + code.size())) return true;
  }
  return false;
}

/// Everything that a run left behind, by the name of its file.
std::vector<std::pair<std::string, std::string>> leftIn(const std::filesystem::path& folder) {
  std::vector<std::pair<std::string, std::string>> left;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    // What the test itself typed is not left behind by the command.
    if (file.path().filename() == "in") continue;
    left.emplace_back(file.path().filename(), Command::contentOf(file.path()));
  }
  return left;
}

TEST(ToolSecrecy, NoNumberAndNoCodeIsLeftAnywhereByAWholeStoryWithAllLoggingOn) {
  Command command;
  std::string typed;
  for (std::size_t i = 0; i < std::size(typedNumbers); ++i) {
    typed += std::string(typedNumbers[i]) + "\n" + typedCodes[i] + "\n";
  }
  const auto told = command.run({"--console-log", "demo", "--typed"}, typed);
  ASSERT_EQ(told.status, 0) << "the demo failed";
  ASSERT_NE(told.err.find("synchronized"), std::string::npos) << "nothing was logged";
  ASSERT_NE(told.out.find("8431"), std::string::npos) << "the typed card was not used";
  std::string said = told.out + told.err;

  // The write-ahead log stays beside the store only while a process has it open.
  command.run({"fault", "arm", "getPaymentInstrumentsList", "delay", "--delay", "3600000"});
  const auto typedCard =
      std::vector<std::string>{"add", "--month", "12", "--year", "2099", "--holder", "A Guest"};
  command.start({"sync", "--console-log"});
  Command observer;
  while (observer.run({"--store", command.store(), "fault", "firings", "--json"})
             .document()["firings"]
             .empty()) {
  }
  command.kill();
  ASSERT_TRUE(std::filesystem::exists(command.store() + "-wal"));
  auto left = leftIn(command.folder());

  command.run({"fault", "clear"});
  for (const auto& card : sandbox::testCards()) {
    const auto added = command.run({"add", "--test-card", card.name, "--json", "--console-log"});
    said += added.out + added.err;
  }
  const auto refused = command.run(typedCard, "3714 4963 5398 430\n7913\n");
  said += refused.out + refused.err;
  said += command.run({"trace", "--last", "99"}).out;
  said += command.run({"cards", "--json"}).out;
  left.emplace_back("what was said", said);
  for (auto& file : leftIn(command.folder())) left.push_back(std::move(file));

  // The test fails without repeating a number.
  for (const auto& [name, text] : left) {
    for (const auto& card : sandbox::testCards()) {
      EXPECT_FALSE(showsNumber(text, card.fields.pan)) << card.name << " in " << name;
    }
    for (const std::string number : typedNumbers) {
      EXPECT_FALSE(showsNumber(text, number)) << number.substr(number.size() - 4) << " in " << name;
    }
    for (const std::string code : typedCodes) {
      EXPECT_FALSE(showsCode(text, code)) << "a code in " << name;
    }
  }
}

}  // namespace
}  // namespace hlv
