// The sandbox's loggers: the remote one, which is a file here, and the console's. Private to the
// sandbox.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Sandbox/Calls/Journal.h"
#include "Values/Result.h"

namespace spdlog {
class logger;
}

namespace hlv::sandbox {

/// Where lines go. Each is written out when it was logged. Threading: any.
using LogSink = std::shared_ptr<spdlog::logger>;
/// Appends to a file, which belongs to its owner alone if it is made here.
Result<LogSink> fileSink(const std::string& path);
[[nodiscard]] LogSink standardErrorSink();
[[nodiscard]] LogSink nullSink();

/// Card numbers come out masked.
///
/// Threading: any.
class Logger final : public HLVSDKLogger {
 public:
  /// Lines are recorded in the journal too, unless it is null: every line goes to both loggers, and
  /// one of them records it.
  explicit Logger(LogSink sink, std::shared_ptr<Journal> journal = nullptr);

  /// Puts the arguments in place of each `%@`: a text as it is, an error as its description or else
  /// its developer message, what is missing as "(null)". Behind the line comes its call site.
  void logWithLevel(int level, const char* path, int line, const char* function, const char* format,
                    const std::vector<HLVSDKLogArgument>& arguments) override;
  /// Writes a finished text.
  void write(int level, const std::string& text);

 private:
  const LogSink sink_;
  const std::shared_ptr<Journal> journal_;
};

}  // namespace hlv::sandbox
