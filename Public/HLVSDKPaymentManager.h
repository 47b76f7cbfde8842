// The kit's door for card operations.
//
// Threading: as the manager that the calls reach; nothing happens to a completion on the way.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrumentManager.h"
#include "Platform/Export.h"

namespace hlv {

/// Forwards each call, unchanged, to the manager of the enabled kit, which is looked up afresh.
/// Before the kit is enabled a call reaches nobody: nothing happens, and its completion is never
/// called.
class HLV_EXPORT HLVSDKPaymentManager : public Object {
 public:
  /// `+new`
  static std::shared_ptr<HLVSDKPaymentManager> make();

  /// `+sharedManager`. The enabled kit's manager, or null.
  static std::shared_ptr<HLVSDKPaymentInstrumentManager> sharedManager();

  /// `-addPaymentInstrument:billingAddress:forGuest:completion:`. A card as the user typed it.
  void addPaymentInstrument(const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
                            const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                            const std::shared_ptr<HLVSDKGuest>& guest,
                            HLVSDKGuestCardCompletion completion) const;

  /// `-deletePaymentInstrumentWithID:useCase:fromGuest:completion:`. The card's identifier at the
  /// backend, and its use case.
  void deletePaymentInstrumentWithID(const NullableString& ID, const NullableString& useCase,
                                     const std::shared_ptr<HLVSDKGuest>& guest,
                                     HLVSDKGuestCompletion completion) const;

  /// `-updatePaymentInstrument:billingAddress:forGuest:completion:`. The card's identifier at the
  /// backend.
  void updatePaymentInstrument(const NullableString& ID,
                               const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                               const std::shared_ptr<HLVSDKGuest>& guest,
                               HLVSDKGuestCardCompletion completion) const;

 private:
  HLVSDKPaymentManager() = default;
};

}  // namespace hlv
