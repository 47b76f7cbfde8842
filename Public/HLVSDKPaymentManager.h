// The kit's entry point for card operations.
//
// Threading: any. Operations run on the caller's thread until they hand over to the backend or the
// provider. Completions come on the main thread, except that of an update, which the backend client
// calls on a thread of its choice.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrumentManager.h"
#include "Platform/Export.h"

namespace hlv {

/// Forwards each call, unchanged, to the manager of the enabled kit, which is looked up afresh.
/// Before the kit is enabled nothing happens, and the completion is never called. Any argument may
/// be null; `HLVSDKPaylevenPaymentInstrumentManager` says which are required, and which errors and
/// silences there are.
class HLV_EXPORT HLVSDKPaymentManager : public Object {
 public:
  /// `+new`
  [[nodiscard]] static std::shared_ptr<HLVSDKPaymentManager> make();

  /// `+sharedManager`. The enabled kit's manager, or null.
  static std::shared_ptr<HLVSDKPaymentInstrumentManager> sharedManager();

  /// `-addPaymentInstrument:billingAddress:forGuest:completion:`. Adds a card as the user typed it.
  /// `completion` gets the guest, the backend's card and an error; on the main thread. For a
  /// guest's first card, card and error may come together. A further card that the backend refuses
  /// comes back with no card **and no error**: it was added only when there is a card.
  void addPaymentInstrument(const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
                            const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                            const std::shared_ptr<HLVSDKGuest>& guest,
                            HLVSDKGuestCardCompletion completion) const;

  /// `-deletePaymentInstrumentWithID:useCase:fromGuest:completion:`. Deletes the card with the
  /// backend's identifier `ID`. `completion` gets the guest as the backend returned it and an
  /// error; on the main thread. Both come together when only the provider failed.
  void deletePaymentInstrumentWithID(const NullableString& ID, const NullableString& useCase,
                                     const std::shared_ptr<HLVSDKGuest>& guest,
                                     HLVSDKGuestCompletion completion) const;

  /// `-updatePaymentInstrument:billingAddress:forGuest:completion:`. Sends the billing address of
  /// the card with the backend's identifier `ID`. `completion` gets the guest, the card and an
  /// error, on the backend client's thread.
  void updatePaymentInstrument(const NullableString& ID,
                               const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                               const std::shared_ptr<HLVSDKGuest>& guest,
                               HLVSDKGuestCardCompletion completion) const;

 private:
  HLVSDKPaymentManager() = default;
};

}  // namespace hlv
