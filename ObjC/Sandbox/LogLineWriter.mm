#include "ObjC/Sandbox/LogLineWriter.h"

#include "ObjC/Binding/Strings.h"

namespace hlv::sandbox::objc {

void writeLine(const std::shared_ptr<HLVSDKLogger>& logger, NSInteger level, const char* path,
               NSInteger line, const char* function, NSString* format, va_list arguments) {
  if (!logger || !format) return;
  NSString* text = [[NSString alloc] initWithFormat:format arguments:arguments];
  // As an argument, so that a "%@" which the line itself holds stays what it is.
  logger->logWithLevel(static_cast<int>(level), path, static_cast<int>(line), function, "%@",
                       {hlv::objc::fromNSString(text)});
  [text release];
}

}  // namespace hlv::sandbox::objc
