// Runs the built command as a person's shell would.
//
// Threading: one thread at a time.
#pragma once

#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>

#include "Tests/Sandbox/TestFolder.h"

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
  explicit Command(const std::string& before = {});
  ~Command();
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  const std::filesystem::path& folder() const { return folder_.path(); }
  std::string store() const { return folder() / "store.sqlite"; }
  /// From here on no line names the store, and the folder is the user's data folder.
  void useDataFolder();

  /// Runs lines with semicolons between them, and returns how the last one ended.
  Finished run(const std::string& lines, const std::string& input = {});
  /// Starts it with a terminal as standard input and standard error, and as its controlling one,
  /// whose end ends it too.
  void startOn(const std::string& terminal, const std::string& line);
  Finished wait();

 private:
  void searchFolder() const;
  void start(const std::string& with, const std::string& line, const std::string& redirections);

  const TestFolder folder_;
  bool namesStore_ = true;
  std::FILE* shell_ = nullptr;
};

}  // namespace hlv::testing
