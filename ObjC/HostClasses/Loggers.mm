// The host's two loggers, as an Objective-C app writes to them.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include <cstdarg>

#include "Host/HLVSDKCoreKit/HLVSDKLogger.h"
#include "ObjC/Binding/Strings.h"
#include "ObjC/HostClasses/PlayedHost.h"
#include "Values/Send.h"

namespace {

/// Renders the line as Foundation does, and leaves the masking of card numbers to the logger. A
/// null logger logs nothing.
void writeLine(const std::shared_ptr<hlv::HLVSDKLogger>& logger, NSInteger level, const char* path,
               NSInteger line, const char* function, NSString* format, va_list arguments) {
  if (!logger || !format) return;
  NSString* text = [[NSString alloc] initWithFormat:format arguments:arguments];
  // As an argument, so that a "%@" which the line itself holds stays what it is.
  logger->logWithLevel(static_cast<int>(level), path, static_cast<int>(line), function, "%@",
                       {hlv::objc::fromNSString(text)});
  [text release];
}

}  // namespace

/// A class of the host whose lines go to the logger that `getter` of the core's host returns.
#define HLV_LOGGER(Logger, getter)                                                                \
  @implementation Logger                                                                          \
  static std::shared_ptr<hlv::HLVSDKLogger> getter() {                                            \
    return hlv::send(hlv::host_classes::playedHost(), &hlv::Host::getter);                        \
  }                                                                                               \
  +(Logger*)sharedLogger {                                                                        \
    static Logger* const logger = [Logger new];                                                   \
    return getter() ? logger : nil;                                                               \
  }                                                                                               \
  -(void)logWithLevel : (NSInteger)level path : (const char*)path line : (NSInteger)line function \
      : (const char*)function format : (NSString*)format,                                         \
      ... {                                                                                       \
    va_list arguments;                                                                            \
    va_start(arguments, format);                                                                  \
    writeLine(getter(), level, path, line, function, format, arguments);                          \
    va_end(arguments);                                                                            \
  }                                                                                               \
  @end

HLV_LOGGER(HLVSDKRemoteLogger, remoteLogger)
HLV_LOGGER(HLVSDKConsoleLogger, consoleLogger)
