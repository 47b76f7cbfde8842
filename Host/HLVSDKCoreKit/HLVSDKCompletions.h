// The shapes in which card operations report.
#pragma once

#include <functional>
#include <memory>

#include "Values/Error.h"
#include "Values/List.h"

namespace hlv {

class HLVSDKCreditCard;
class HLVSDKGuest;

/// (guest, error). Each may be null, and both may be given.
using HLVSDKGuestCompletion = std::function<void(std::shared_ptr<HLVSDKGuest>, ErrorPtr)>;

/// (guest, card, error). Each may be null, and all may be given.
using HLVSDKGuestCardCompletion =
    std::function<void(std::shared_ptr<HLVSDKGuest>, std::shared_ptr<HLVSDKCreditCard>, ErrorPtr)>;

/// (the guest's cards, error). The list may be missing.
using HLVSDKCreditCardsCompletion = std::function<void(NullableList<HLVSDKCreditCard>, ErrorPtr)>;

/// (success, error).
using HLVSDKSuccessCompletion = std::function<void(bool, ErrorPtr)>;

}  // namespace hlv
