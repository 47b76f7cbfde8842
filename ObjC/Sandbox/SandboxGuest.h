// A guest of the sandbox.
//
// Threading: any.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "ObjC/Sandbox/SandboxObject.h"

@interface SandboxGuest : HLVSDKGuest <SandboxObject> {
 @private
  std::shared_ptr<hlv::HLVSDKGuest>* _guest;
}
- (instancetype)initWithGuest:(const std::shared_ptr<hlv::HLVSDKGuest>&)guest;
@end

namespace hlv::sandbox::objc {

/// While its sandbox is open a guest is always the same object.
::HLVSDKGuest* asObject(const std::shared_ptr<hlv::HLVSDKGuest>& guest);

}  // namespace hlv::sandbox::objc
