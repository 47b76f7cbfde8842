// The provider's instrument for a card that is about to be added.
//
// Threading: any.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrument.h"
#include "Host/PaylevenFramework/PLVPaymentInstrument.h"

namespace hlv {

/// Hands the card's fields to the provider's library as they are. Null when that makes nothing.
std::shared_ptr<PLVCreditCardPaymentInstrument> makeProviderInstrument(
    const std::shared_ptr<HLVSDKPaymentInstrument>& card);

}  // namespace hlv
