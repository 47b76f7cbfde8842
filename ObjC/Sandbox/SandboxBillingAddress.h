// A billing address as a person typed it.
//
// Threading: immutable; any.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "ObjC/Sandbox/SandboxObject.h"
#include "Sandbox/Records/EnteredAddress.h"

@interface SandboxBillingAddress : HLVSDKPaymentBillingAddress <SandboxObject> {
 @private
  std::shared_ptr<hlv::sandbox::EnteredAddress>* _address;
}
- (instancetype)initWithAddress:(const std::shared_ptr<hlv::sandbox::EnteredAddress>&)address;
@end
