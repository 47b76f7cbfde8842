// The protocol through which the host reaches a kit's card operations.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Object.h"

namespace hlv {

class HLVSDKPaymentBillingAddress;
class HLVSDKPaymentInstrument;

/// Any argument may be missing; which are required, and which thread completes, is the
/// implementing class's contract.
class HLV_EXPORT HLVSDKPaymentInstrumentManager : public Object {
 public:
  /// `-addPaymentInstrument:billingAddress:forGuest:completion:`
  virtual void addPaymentInstrument(const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
                                    const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                                    const std::shared_ptr<HLVSDKGuest>& guest,
                                    HLVSDKGuestCardCompletion completion) = 0;

  /// `-deletePaymentInstrumentWithID:useCase:fromGuest:completion:`
  virtual void deletePaymentInstrumentWithID(const NullableString& ID,
                                             const NullableString& useCase,
                                             const std::shared_ptr<HLVSDKGuest>& guest,
                                             HLVSDKGuestCompletion completion) = 0;

  /// `-updatePaymentInstrument:billingAddress:forGuest:completion:`
  virtual void updatePaymentInstrument(const NullableString& ID,
                                       const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                                       const std::shared_ptr<HLVSDKGuest>& guest,
                                       HLVSDKGuestCardCompletion completion) = 0;
};

}  // namespace hlv
