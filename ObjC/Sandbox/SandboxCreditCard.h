// A card as the sandbox's backend keeps it.
//
// Threading: immutable; any.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "ObjC/Sandbox/SandboxObject.h"

@interface SandboxCreditCard : HLVSDKCreditCard <SandboxObject> {
 @private
  std::shared_ptr<hlv::HLVSDKCreditCard>* _card;
}
- (instancetype)initWithCard:(const std::shared_ptr<hlv::HLVSDKCreditCard>&)card;
@end

namespace hlv::sandbox::objc {

::HLVSDKCreditCard* asObject(const std::shared_ptr<hlv::HLVSDKCreditCard>& card);

}  // namespace hlv::sandbox::objc
