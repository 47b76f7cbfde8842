// The session of the guest who is signed in at the sandbox.
//
// Threading: any.
#pragma once

#import <HLVSDKPaylevenKit/HalvoAuthenticationDeclarations.h>

#include "Host/Halvo_Authentication/HLVSession.h"
#include "ObjC/Sandbox/SandboxObject.h"

@interface SandboxSession : HLVSession <SandboxObject> {
 @private
  std::shared_ptr<hlv::HLVSession>* _session;
}
- (instancetype)initWithSession:(const std::shared_ptr<hlv::HLVSession>&)session;
@end
