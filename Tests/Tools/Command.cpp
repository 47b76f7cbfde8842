#include "Tests/Tools/Command.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

#include "Sandbox/Cards/TestCards.h"
#include "Tests/Secrecy/CardDataSearch.h"

namespace hlv::testing {

Command::Command(const std::string& before) {
  // What the output looks like is no matter of who runs the tests.
  ::setenv("LC_ALL", "C.UTF-8", 1);
  ::unsetenv("COLUMNS");
  run(before);
}

Command::~Command() {
  if (shell_) wait();
}

void Command::searchFolder() const {
  std::vector<CardDataSearch> searches;
  for (const auto& card : sandbox::testCards()) searches.emplace_back(card.fields.pan, "");
  for (const auto& [number, code] : typedCards) searches.emplace_back(number, code);
  for (const auto& file : std::filesystem::recursive_directory_iterator(folder())) {
    // What the test itself typed is not left behind by the command.
    if (file.path().filename() == "in") continue;
    const auto content = contentOf(file.path());
    for (const auto& search : searches) EXPECT_EQ(search.in(content), std::nullopt) << file.path();
  }
}

void Command::useDataFolder() {
  ::setenv("XDG_DATA_HOME", folder().c_str(), 1);
  namesStore_ = false;
}

Finished Command::run(const std::string& lines, const std::string& input) {
  std::ofstream(folder() / "in") << input;
  Finished last;
  std::istringstream each(lines);
  for (std::string line; std::getline(each, line, ';');) {
    start("setsid", line, "<in 2>err");
    last = wait();
  }
  return last;
}

void Command::startOn(const std::string& terminal, const std::string& line) {
  start("setsid --ctty", line, "<" + terminal + " 2>" + terminal);
}

Finished Command::wait() {
  const int status = ::pclose(std::exchange(shell_, nullptr));
  searchFolder();
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          contentOf(folder() / "out"), contentOf(folder() / "err")};
}

void Command::start(const std::string& with, const std::string& line,
                    const std::string& redirections) {
  const auto named = namesStore_ ? "--store '" + store() + "' " : "";
  const auto typed = "cd '" + folder().string() + "' && exec " + with + " '" PAYLEVENKIT "' " +
                     named + line + " >out " + redirections;
  shell_ = ::popen(typed.c_str(), "we");
  if (!shell_) throw std::runtime_error("the command cannot be started");
}

}  // namespace hlv::testing
