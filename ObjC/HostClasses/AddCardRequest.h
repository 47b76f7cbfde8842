// A request to register a card, on its way from Objective-C to the core's backend.
//
// Threading: one thread at a time.
#pragma once

#import <HLVSDKPaylevenKit/HLVSDKPaymentKitDeclarations.h>

#include <memory>

#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"

namespace hlv::host_classes {

/// Asks `request` for its body, and whether it is valid, so that what a kit's subclass adds gets
/// through. Null for nil.
std::shared_ptr<hlv::HLVSDKAddCreditCardRequestInfo> forwarded(
    ::HLVSDKAddCreditCardRequestInfo* request);

}  // namespace hlv::host_classes
