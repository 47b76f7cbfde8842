// The sandbox's request to change the current guest.
//
// Threading: one thread at a time.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "ObjC/Sandbox/SandboxObject.h"

/// What `new` makes of the class that it derives from; nil while no sandbox is open.
@interface SandboxUpdateGuestRequest : HLVSDKUpdateGuestRequestInfo <SandboxObject> {
 @private
  std::shared_ptr<hlv::HLVSDKUpdateGuestRequestInfo>* _request;
}
@end
