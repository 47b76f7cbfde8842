// The sandbox's remote logger: a file. Private to the sandbox.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "Sandbox/Calls/Journal.h"
#include "Sandbox/Logging/LogSink.h"

namespace hlv::sandbox {

/// Also records in the journal. The console logger, which gets every line as well, does not.
///
/// Threading: any.
class RemoteFileLogger final : public HLVSDKLogger {
 public:
  RemoteFileLogger(LogSink sink, std::shared_ptr<Journal> journal);

  void logWithLevel(int level, const char* path, int line, const char* function, const char* format,
                    const std::vector<HLVSDKLogArgument>& arguments) override;

 private:
  const LogSink sink_;
  const std::shared_ptr<Journal> journal_;
};

}  // namespace hlv::sandbox
