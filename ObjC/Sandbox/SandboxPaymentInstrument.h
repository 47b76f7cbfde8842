// A card as a person typed it.
//
// Threading: any.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKCoreKitDeclarations.h>

#include "ObjC/Sandbox/SandboxObject.h"
#include "Sandbox/Cards/EnteredCard.h"

@interface SandboxPaymentInstrument : HLVSDKPaymentInstrument <SandboxObject> {
 @private
  std::shared_ptr<hlv::sandbox::EnteredCard>* _card;
}
- (instancetype)initWithCard:(const std::shared_ptr<hlv::sandbox::EnteredCard>&)card;
@end
