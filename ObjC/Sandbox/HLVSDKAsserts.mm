// Assertions, which the sandbox records in its journal.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "ObjC/Binding/Strings.h"
#include "ObjC/Sandbox/OpenSandbox.h"

using hlv::objc::fromNSString;
using hlv::sandbox::objc::openHost;

@implementation HLVSDKAsserts

+ (void)handleAssertWithMessage:(NSString*)message {
  if (const auto host = openHost()) host->handleAssertWithMessage(fromNSString(message));
}

+ (void)handleParameterAssert:(NSString*)parameter withMessage:(NSString*)message {
  if (const auto host = openHost()) {
    host->handleParameterAssert(fromNSString(parameter), fromNSString(message));
  }
}

@end
