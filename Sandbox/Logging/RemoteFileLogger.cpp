#include "Sandbox/Logging/RemoteFileLogger.h"

#include "Sandbox/Logging/LogLine.h"

namespace hlv::sandbox {

RemoteFileLogger::RemoteFileLogger(LogSink sink, std::shared_ptr<Journal> journal)
    : sink_(std::move(sink)), journal_(std::move(journal)) {}

void RemoteFileLogger::logWithLevel(int level, const char* path, int line, const char* function,
                                    const char* format,
                                    const std::vector<HLVSDKLogArgument>& arguments) {
  const auto text = renderedLine(format, arguments);
  journal_->record("kit", "log", text, levelName(level));
  sink_.write(level, lineWithSite(text, path, line, function));
}

}  // namespace hlv::sandbox
