#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include "Tests/Tools/Command.h"

namespace hlv {
namespace {

using testing::Command;

/// The person's end of a terminal.
class Person {
 public:
  Person() : terminal_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    // Holds the other end open, so that the terminal outlives the command.
    if (::grantpt(terminal_) == 0 && ::unlockpt(terminal_) == 0) {
      held_ = ::open(::ptsname(terminal_), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
  }
  ~Person() {
    ::close(held_);
    ::close(terminal_);
  }
  /// A bare container may have no pseudo-terminals.
  bool hasTerminal() const { return held_ >= 0; }
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;

  std::string name() const { return ::ptsname(terminal_); }
  void type(const std::string& keys) const {
    EXPECT_EQ(::write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }
  /// Reads until `text` stands on the screen.
  void waitFor(const std::string& text) {
    char byte = 0;
    while (screen_.find(text, read_) == std::string::npos) {
      ASSERT_EQ(::read(terminal_, &byte, 1), 1) << text;
      screen_.push_back(byte);
    }
    read_ = screen_.size();
  }
  const std::string& screen() const { return screen_; }
  bool seesTyping() const {
    termios settings{};
    ::tcgetattr(terminal_, &settings);
    return (settings.c_lflag & ECHO) != 0;
  }

 private:
  const int terminal_;
  int held_ = -1;
  std::string screen_;
  std::size_t read_ = 0;
};

TEST(ToolPrompt, NeverShowsNumberOrCodeAndLetsTypingBeSeenAgainOnEveryWayOut) {
  const std::string number = "card number (not shown): ";
  const struct {
    std::string line;
    std::vector<std::pair<std::string, std::string>> promptsAndKeys;
    int status;
  } rows[] = {
      {"add",
       {{number, "4111 1111 1111 1111\n"},
        {"security code (not shown): ", "907\n"},
        {"month of expiry: ", "12\n"},
        {"year of expiry: ", "2099\n"},
        {"name on the card: ", "A Guest\n"}},
       0},
      {"add", {{number, "4111\x03"}}, 128 + SIGINT},
      {"add", {{number, "\x04"}}, 2},
      {"demo", {{"Card number, or Enter for the test card visa: ", "\x03"}}, 128 + SIGINT},
  };
  for (const auto& row : rows) {
    Command command(Command::guest);
    if (row.line == "demo") command.useDataFolder();
    Person person;
    if (!person.hasTerminal()) GTEST_SKIP() << "There are no pseudo-terminals here.";
    command.startOn(person.name(), row.line);
    for (const auto& [prompt, keys] : row.promptsAndKeys) {
      person.waitFor(prompt);
      const bool isShown =
          prompt.starts_with("month") || prompt.starts_with("year") || prompt.starts_with("name");
      EXPECT_EQ(person.seesTyping(), isShown) << prompt;
      person.type(keys);
    }
    EXPECT_EQ(command.wait().status, row.status) << row.line;
    EXPECT_TRUE(person.seesTyping()) << row.line;
    for (const char* secret : {"111", "907"}) {
      EXPECT_EQ(person.screen().find(secret), std::string::npos) << row.line;
    }
  }
}

}  // namespace
}  // namespace hlv
