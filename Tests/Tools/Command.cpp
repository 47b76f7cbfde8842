#include "Tests/Tools/Command.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iomanip>
#include <sstream>
#include <stdexcept>

namespace hlv::testing {

Command::Command(const std::string& before) {
  // What the output looks like is no matter of who runs the tests.
  ::setenv("LC_ALL", "C.UTF-8", 1);
  ::unsetenv("COLUMNS");
  run(before);
}

Command::~Command() {
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  wait();
}

void Command::useDataFolder() {
  ::setenv("XDG_DATA_HOME", folder().c_str(), 1);
  namesStore_ = false;
}

Finished Command::run(const std::string& lines, const std::string& input) {
  const auto in = folder() / "in";
  Finished last;
  std::istringstream each(lines);
  for (std::string line; std::getline(each, line, ';');) {
    auto arguments = argumentsOf(line);
    std::ofstream(in) << input;
    spawn(std::move(arguments), in, folder() / "err");
    last = wait();
  }
  return last;
}

void Command::startOn(const std::string& terminal, const std::string& line) {
  spawn(argumentsOf(line), terminal, terminal);
}

Finished Command::wait() {
  int status = 0;
  if (::waitpid(process_, &status, 0) != process_) throw std::runtime_error("no such process");
  process_ = 0;
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          contentOf(folder() / "out"), contentOf(folder() / "err")};
}

std::vector<std::string> Command::argumentsOf(const std::string& line) {
  std::vector<std::string> arguments;
  std::istringstream words(line);
  for (std::string word; words >> std::quoted(word);) {
    if (word == "ID") word = run("cards --json").document()["backend"][0]["id"];
    arguments.push_back(word);
  }
  return arguments;
}

void Command::spawn(std::vector<std::string> arguments, const std::string& in,
                    const std::string& err) {
  if (namesStore_) arguments.insert(arguments.begin(), {"--store", store()});
  arguments.insert(arguments.begin(), PAYLEVENKIT);
  std::vector<char*> raw;
  for (auto& argument : arguments) raw.push_back(argument.data());
  raw.push_back(nullptr);

  const std::string out = folder() / "out";
  process_ = ::fork();
  if (process_ < 0) throw std::runtime_error("the command cannot be started");
  if (process_ > 0) return;
  // A session of its own, whose controlling terminal becomes the first one that it opens.
  ::setsid();
  constexpr int written = O_WRONLY | O_CREAT | O_TRUNC;
  ::dup2(::open(in.c_str(), O_RDONLY), STDIN_FILENO);
  ::dup2(::open(out.c_str(), written, 0600), STDOUT_FILENO);
  ::dup2(::open(err.c_str(), written, 0600), STDERR_FILENO);
  ::execv(PAYLEVENKIT, raw.data());
  ::_exit(127);
}

}  // namespace hlv::testing
