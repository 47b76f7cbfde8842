// Runs the built command as a person's shell would.
//
// Threading: one thread at a time.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace hlv::testing {

struct Finished {
  /// The exit status, or 128 and the signal's number.
  int status = 0;
  std::string out;
  std::string err;
  nlohmann::json document() const { return nlohmann::json::parse(out); }
};

/// A folder of the test's own with one store in it; the folder goes away with this object.
class Command {
 public:
  Command();
  ~Command();
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  const std::filesystem::path& folder() const { return folder_; }
  std::string store() const { return folder_ / "store.sqlite"; }

  /// Runs the command on the store and waits for its end.
  Finished run(std::vector<std::string> arguments, const std::string& input = {});
  /// Starts it and lets it run.
  void start(std::vector<std::string> arguments);
  /// Ends what was started, without any chance to tidy up.
  Finished kill();
  /// Starts it with a terminal as standard input and standard error, and as its controlling one.
  void startOn(const std::string& terminal, std::vector<std::string> arguments);
  Finished wait();

  static std::string contentOf(const std::filesystem::path& file);

 private:
  void spawn(std::vector<std::string> arguments, const std::string& in, const std::string& err);

  std::filesystem::path folder_;
  pid_t process_ = 0;
};

}  // namespace hlv::testing
