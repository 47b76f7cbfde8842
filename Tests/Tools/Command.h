// Runs the built command as a person's shell would.
//
// Threading: one thread at a time.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Sandbox/Cards/TestCards.h"
#include "Tests/Sandbox/TestFolder.h"
#include "Tests/Secrecy/CardDataSearch.h"

namespace hlv::testing {

struct Finished {
  /// The exit status, or 128 and the signal's number.
  int status = 0;
  std::string out;
  std::string err;
  nlohmann::json document() const { return nlohmann::json::parse(out); }
};

/// A folder of the test's own with one store in it; the folder goes away with this object.
///
/// No command may print or leave the number of a card that a test types, nor its code.
///
/// A line holds the arguments of one command as they are typed to a shell.
class Command {
 public:
  inline static const std::string guest = "sign-in guest@example.com";
  inline static const std::string guestWithCard = guest + "; add --test-card visa";
  /// Two published American Express numbers: their four-digit codes cannot be mistaken for the
  /// milliseconds of a log line.
  static constexpr std::pair<const char*, const char*> typedCards[] = {{"371449635398431", "7913"},
                                                                       {"378734493671000", "8642"}};

  /// Runs what comes before the test.
  explicit Command(const std::string& before = {}) {
    // What the output looks like is no matter of who runs the tests.
    ::setenv("LC_ALL", "C.UTF-8", 1);
    ::unsetenv("COLUMNS");
    run(before);
  }
  ~Command() {
    if (shell_) wait();
  }
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  const std::filesystem::path& folder() const { return folder_.path(); }
  std::string store() const { return folder() / "store.sqlite"; }
  /// From here on no line names the store, and the folder is the user's data folder.
  void useDataFolder() {
    ::setenv("XDG_DATA_HOME", folder().c_str(), 1);
    namesStore_ = false;
  }

  /// Runs lines with semicolons between them, and returns how the last one ended.
  Finished run(const std::string& lines, const std::string& input = {}) {
    std::ofstream(folder() / "in") << input;
    Finished last;
    std::istringstream each(lines);
    for (std::string line; std::getline(each, line, ';');) {
      start("setsid", line, "<in 2>err");
      last = wait();
    }
    return last;
  }
  /// Starts it with a terminal as standard input and standard error, and as its controlling one,
  /// whose end ends it too.
  void startOn(const std::string& terminal, const std::string& line) {
    start("setsid --ctty", line, "<" + terminal + " 2>" + terminal);
  }
  Finished wait() {
    const int status = ::pclose(std::exchange(shell_, nullptr));
    searchFolder();
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            contentOf(folder() / "out"), contentOf(folder() / "err")};
  }

 private:
  void searchFolder() const {
    std::vector<CardDataSearch> searches;
    for (const auto& card : sandbox::testCards()) searches.emplace_back(card.fields.pan, "");
    for (const auto& [number, code] : typedCards) searches.emplace_back(number, code);
    for (const auto& file : std::filesystem::recursive_directory_iterator(folder())) {
      // What the test itself typed is not left behind by the command.
      if (file.path().filename() == "in") continue;
      const auto content = contentOf(file.path());
      for (const auto& search : searches)
        EXPECT_EQ(search.in(content), std::nullopt) << file.path();
    }
  }
  void start(const std::string& with, const std::string& line, const std::string& redirections) {
    const auto named = namesStore_ ? "--store '" + store() + "' " : "";
    const auto typed = "cd '" + folder().string() + "' && exec " + with + " '" PAYLEVENKIT "' " +
                       named + line + " >out " + redirections;
    shell_ = ::popen(typed.c_str(), "we");
    if (!shell_) throw std::runtime_error("the command cannot be started");
  }

  const TestFolder folder_;
  bool namesStore_ = true;
  std::FILE* shell_ = nullptr;
};

}  // namespace hlv::testing
