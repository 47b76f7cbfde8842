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

constexpr const char* anHour = "3600000";

TEST(ToolWaiting, EndsWithASentenceWhenAServiceNeverAnswers) {
  Command command;
  command.run({"sign-in", "guest@example.com"});
  command.run({"fault", "arm", "createUserToken", "never"});
  const auto finished = command.run({"add", "--test-card", "visa"});
  EXPECT_EQ(finished.status, 1);
  EXPECT_NE(finished.out.find("never completes: the service never answered createUserToken"),
            std::string::npos)
      << finished.out;
  EXPECT_EQ(command.run({"add", "--test-card", "visa"}).status, 0) << "the fault was for one call";
}

TEST(ToolWaiting, EndsWithASentenceWhenTheKitIsNotEnabled) {
  const struct {
    std::string way;
    std::string assertion;
  } rows[] = {{"no-entry", "Configuration must have HLVSDKPaylevenKit in kits array"},
              {"wrong-class", "must be kind of HLVSDKPaylevenKitConfiguration class"},
              {"no-key", "Configuration for PaylevenKit must have payment key"},
              {"none", ""}};
  Command command;
  command.run({"sign-in", "guest@example.com"});
  for (const auto& row : rows) {
    const auto finished = command.run({"add", "--test-card", "visa", "--enabling", row.way});
    EXPECT_EQ(finished.status, 1) << row.way;
    EXPECT_NE(finished.out.find("the kit is not enabled"), std::string::npos) << finished.out;
    EXPECT_NE(finished.out.find(row.assertion), std::string::npos) << finished.out;
  }
}

TEST(ToolWaiting, ShowsTheSecondAnswerOfAService) {
  Command command;
  command.run({"sign-in", "guest@example.com"});
  command.run({"fault", "arm", "addCreditCardForGuest", "twice"});
  const auto finished = command.run({"add", "--test-card", "visa", "--json"});
  EXPECT_EQ(finished.status, 0);
  int answers = 0;
  const auto timeline = finished.document()["timeline"];
  for (const auto& event : timeline) {
    const auto what = event["what"].get<std::string>();
    if (event["from"] == "backend" && what.starts_with("addCreditCardForGuest")) ++answers;
  }
  EXPECT_EQ(answers, 2);
}

TEST(ToolInterruption, LosesNothingThatWasAnswered) {
  Command command;
  command.run({"sign-in", "guest@example.com"});
  command.run({"add", "--test-card", "visa"});
  command.run({"fault", "arm", "getPaymentInstrumentsList", "delay", "--delay", anHour});

  // The provider has answered that it stores the second card, and its list is held back.
  command.start({"add", "--test-card", "mastercard", "--use-case", "business"});
  Command observer;
  while (observer.run({"--store", command.store(), "fault", "firings", "--json"})
             .document()["firings"]
             .empty()) {
  }
  EXPECT_EQ(command.kill().status, 128 + SIGKILL);

  const auto after = command.run({"cards", "--json"}).document();
  EXPECT_EQ(after["backend"].size(), 1U);
  EXPECT_EQ(after["provider"].size(), 2U);
  EXPECT_EQ(command.run({"sync"}).status, 0);
  EXPECT_TRUE(command.run({"cards", "--json"}).document()["agreement"]);
}

/// The person's end of a terminal.
class Person {
 public:
  Person() : terminal_(::posix_openpt(O_RDWR | O_NOCTTY)) {
    if (terminal_ < 0) return;
    ::grantpt(terminal_);
    ::unlockpt(terminal_);
    // Holds the other end open, so that the terminal outlives the command.
    held_ = ::open(::ptsname(terminal_), O_RDWR | O_NOCTTY);
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
      ASSERT_EQ(::read(terminal_, &byte, 1), 1) << screen_;
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

TEST(ToolPrompt, NeitherShowsTheNumberNorTheCode) {
  Command command;
  command.run({"sign-in", "guest@example.com"});
  Person person;
  if (!person.hasTerminal()) GTEST_SKIP() << "There are no pseudo-terminals here.";
  command.startOn(person.name(), {"add"});
  person.waitFor("card number (not shown): ");
  EXPECT_FALSE(person.seesTyping());
  person.type("4111 1111 1111 1111\n");
  person.waitFor("security code (not shown): ");
  person.type("907\n");
  person.waitFor("month of expiry: ");
  EXPECT_TRUE(person.seesTyping());
  person.type("12\n");
  person.waitFor("year of expiry: ");
  person.type("2099\n");
  person.waitFor("name on the card: ");
  person.type("A Guest\n");
  const auto finished = command.wait();
  EXPECT_EQ(finished.status, 0) << finished.out;
  for (const char* secret : {"111", "907"}) {
    EXPECT_EQ(person.screen().find(secret), std::string::npos) << secret;
  }
}

TEST(ToolPrompt, LetsThePersonSeeTypingAgainOnEveryWayOut) {
  const struct {
    const char* way;
    std::string keys;
    int status;
  } rows[] = {{"Ctrl-C", "4111\x03", 128 + SIGINT}, {"Ctrl-D", "\x04", 2}, {"Enter", "\n", 2}};
  for (const auto& row : rows) {
    Command command;
    command.run({"sign-in", "guest@example.com"});
    Person person;
    if (!person.hasTerminal()) GTEST_SKIP() << "There are no pseudo-terminals here.";
    command.startOn(person.name(), {"add"});
    person.waitFor("card number (not shown): ");
    person.type(row.keys);
    EXPECT_EQ(command.wait().status, row.status) << row.way;
    EXPECT_TRUE(person.seesTyping()) << row.way;
    EXPECT_EQ(person.screen().find("4111"), std::string::npos) << row.way;
  }
}

}  // namespace
}  // namespace hlv
