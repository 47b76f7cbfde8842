#include "Sandbox/Logging/ConsoleLogger.h"

#include <utility>

#include "Sandbox/Logging/LogLine.h"
#include "Sandbox/Masking/MaskedText.h"

namespace hlv::sandbox {

ConsoleLogger::ConsoleLogger(LogSink sink) : sink_(std::move(sink)) {}

void ConsoleLogger::logWithLevel(int level, const char* path, int line, const char* function,
                                 const char* format,
                                 const std::vector<HLVSDKLogArgument>& arguments) {
  sink_.write(level, lineWithSite(renderedLine(format, arguments), path, line, function));
}

void ConsoleLogger::write(int level, const std::string& text) {
  sink_.write(level, maskedText(text));
}

}  // namespace hlv::sandbox
