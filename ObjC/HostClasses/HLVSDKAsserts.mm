// Assertions, as an Objective-C app reports them.
#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "ObjC/Binding/Strings.h"
#include "ObjC/HostClasses/PlayedHost.h"

using hlv::objc::fromNSString;
using hlv::host_classes::playedHost;

@implementation HLVSDKAsserts

+ (void)handleAssertWithMessage:(NSString*)message {
  if (const auto host = playedHost()) host->handleAssertWithMessage(fromNSString(message));
}

+ (void)handleParameterAssert:(NSString*)parameter withMessage:(NSString*)message {
  if (const auto host = playedHost()) {
    host->handleParameterAssert(fromNSString(parameter), fromNSString(message));
  }
}

@end
