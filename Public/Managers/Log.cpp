#include "Public/Managers/Log.h"

#include "Values/Send.h"

namespace hlv {

void log(LogLevel level, const CallSite& site, const char* format,
         const std::vector<HLVSDKLogArgument>& arguments) {
  for (const auto& logger :
       {HLVSDKRemoteLogger::sharedLogger(), HLVSDKConsoleLogger::sharedLogger()}) {
    send(logger, &HLVSDKLogger::logWithLevel, static_cast<int>(level), site.path, site.line,
         site.function.c_str(), format, arguments);
  }
}

}  // namespace hlv
