// The sandbox's remote logger, as an Objective-C app writes to it.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "ObjC/Sandbox/LogLineWriter.h"
#include "ObjC/Sandbox/OpenSandbox.h"
#include "Values/Send.h"

namespace {

std::shared_ptr<hlv::HLVSDKLogger> sandboxLogger() {
  return hlv::send(hlv::sandbox::objc::openHost(), &hlv::Host::remoteLogger);
}

}  // namespace

@implementation HLVSDKRemoteLogger

+ (HLVSDKRemoteLogger*)sharedLogger {
  static HLVSDKRemoteLogger* const logger = [HLVSDKRemoteLogger new];
  return sandboxLogger() ? logger : nil;
}

- (void)logWithLevel:(NSInteger)level
                path:(const char*)path
                line:(NSInteger)line
            function:(const char*)function
              format:(NSString*)format, ... {
  va_list arguments;
  va_start(arguments, format);
  hlv::sandbox::objc::writeLine(sandboxLogger(), level, path, line, function, format, arguments);
  va_end(arguments);
}

@end
