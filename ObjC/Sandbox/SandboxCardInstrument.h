// A card instrument of the sandbox's provider: made from an entered card, or listed.
//
// Threading: immutable; any.
#pragma once

#import <HLVSDKPaylevenKit/PaylevenFrameworkDeclarations.h>

#include "Host/PaylevenFramework/PLVPaymentInstrument.h"
#include "ObjC/Sandbox/SandboxObject.h"

@interface SandboxCardInstrument : PLVCreditCardPaymentInstrument <SandboxObject> {
 @private
  std::shared_ptr<hlv::PLVCreditCardPaymentInstrument>* _instrument;
}
- (instancetype)initWithInstrument:
    (const std::shared_ptr<hlv::PLVCreditCardPaymentInstrument>&)instrument;
@end

namespace hlv::sandbox::objc {

::PLVCreditCardPaymentInstrument* asObject(
    const std::shared_ptr<hlv::PLVCreditCardPaymentInstrument>& instrument);

}  // namespace hlv::sandbox::objc
