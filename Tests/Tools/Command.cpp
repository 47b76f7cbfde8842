#include "Tests/Tools/Command.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace hlv::testing {

Command::Command() {
  auto folder = (std::filesystem::temp_directory_path() / "paylevenkit-test-XXXXXX").string();
  if (!::mkdtemp(folder.data())) throw std::runtime_error("no temporary folder");
  folder_ = folder;
}

Command::~Command() {
  if (process_ > 0) kill();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

Finished Command::run(std::vector<std::string> arguments, const std::string& input) {
  const auto in = folder_ / "in";
  std::ofstream(in) << input;
  spawn(std::move(arguments), in, folder_ / "err");
  return wait();
}

void Command::start(std::vector<std::string> arguments) {
  spawn(std::move(arguments), "/dev/null", folder_ / "err");
}

void Command::startOn(const std::string& terminal, std::vector<std::string> arguments) {
  spawn(std::move(arguments), terminal, terminal);
}

Finished Command::kill() {
  ::kill(process_, SIGKILL);
  return wait();
}

Finished Command::wait() {
  int status = 0;
  if (::waitpid(process_, &status, 0) != process_) throw std::runtime_error("no such process");
  process_ = 0;
  return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
          contentOf(folder_ / "out"), contentOf(folder_ / "err")};
}

std::string Command::contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void Command::spawn(std::vector<std::string> arguments, const std::string& in,
                    const std::string& err) {
  arguments.insert(arguments.begin(), {PAYLEVENKIT, "--store", store()});
  std::vector<char*> raw;
  for (auto& argument : arguments) raw.push_back(argument.data());
  raw.push_back(nullptr);

  posix_spawn_file_actions_t files;
  ::posix_spawn_file_actions_init(&files);
  const auto open = [&](int descriptor, const std::string& path, int flags) {
    ::posix_spawn_file_actions_addopen(&files, descriptor, path.c_str(), flags, 0600);
  };
  open(STDIN_FILENO, in, O_RDONLY);
  open(STDOUT_FILENO, folder_ / "out", O_WRONLY | O_CREAT | O_TRUNC);
  open(STDERR_FILENO, err, O_WRONLY | O_CREAT | O_TRUNC);
  posix_spawnattr_t attributes;
  ::posix_spawnattr_init(&attributes);
  // A session of its own, whose controlling terminal becomes the first one that it opens.
  ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
  const int failure =
      ::posix_spawn(&process_, PAYLEVENKIT, &files, &attributes, raw.data(), environ);
  ::posix_spawnattr_destroy(&attributes);
  ::posix_spawn_file_actions_destroy(&files);
  if (failure != 0) throw std::runtime_error("the command cannot be started");
}

}  // namespace hlv::testing
