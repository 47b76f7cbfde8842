// The sandbox's console logger. Private to the sandbox.
#pragma once

#include <string>

#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Sandbox/Logging/LogSink.h"

namespace hlv::sandbox {

/// Threading: any.
class ConsoleLogger final : public HLVSDKLogger {
 public:
  explicit ConsoleLogger(LogSink sink);

  void logWithLevel(int level, const char* path, int line, const char* function, const char* format,
                    const std::vector<HLVSDKLogArgument>& arguments) override;
  /// Writes a finished text, card numbers masked.
  void write(int level, const std::string& text);

 private:
  const LogSink sink_;
};

}  // namespace hlv::sandbox
