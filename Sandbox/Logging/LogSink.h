// Where log lines go: the logging library, behind a face of our own. Private to the sandbox.
//
// Threading: any.
#pragma once

#include <memory>
#include <string>

namespace spdlog {
class logger;
}

namespace hlv::sandbox {

class LogSink {
 public:
  /// Appends to a file, which belongs to its owner alone if it is made here. Throws
  /// std::runtime_error with one plain sentence when it cannot be written.
  static LogSink toFile(const std::string& path);
  static LogSink toStandardError();
  static LogSink toNowhere();

  /// `level` is the host's, 1 to 4. The line is written out when this returns.
  void write(int level, const std::string& line) const;

 private:
  explicit LogSink(std::shared_ptr<spdlog::logger> logger);

  std::shared_ptr<spdlog::logger> logger_;
};

}  // namespace hlv::sandbox
