// Where log lines go: the logging library, behind a face of our own. Private to the sandbox.
//
// Threading: any.
#pragma once

#include <memory>
#include <string>

#include "Values/Result.h"

namespace spdlog {
class logger;
}

namespace hlv::sandbox {

class LogSink {
 public:
  /// Appends to a file, which belongs to its owner alone if it is made here.
  static Result<LogSink> toFile(const std::string& path);
  [[nodiscard]] static LogSink toStandardError();
  [[nodiscard]] static LogSink toNowhere();

  /// "error", "warning", "info" and "debug" for the host's levels, 1 to 4.
  static std::string levelName(int level);
  /// The line is written out when this returns.
  void write(int level, const std::string& line) const;

 private:
  explicit LogSink(std::shared_ptr<spdlog::logger> logger);

  std::shared_ptr<spdlog::logger> logger_;
};

}  // namespace hlv::sandbox
