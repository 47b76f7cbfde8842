// The host's client of its backend.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKCompletions.h"
#include "Host/Host.h"
#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Object.h"
#include "Values/Value.h"

namespace hlv {

class HLVSDKAddCreditCardRequestInfo;
class HLVSDKUpdateGuestRequestInfo;

/// Implementations must
/// - take every operation from any thread, and skip an empty completion;
/// - reply to each call once, on any thread, inside the call or later. The kit takes one reply a
///   call and ignores further ones, except where it hands over the app's own completion
///   (`updateCreditCard`);
/// - give no error on success, and free a callback that will never be called.
class HLV_EXPORT HLVSDKAPIManager : public Object {
 public:
  /// `+manager`. The one client of the process.
  static std::shared_ptr<HLVSDKAPIManager> manager() { return Host::ask(&Host::apiManager); }

  /// `-updateCurrentGuestWithRequest:completion:`. No error means that the guest has the token.
  virtual void updateCurrentGuestWithRequest(
      const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
      HLVSDKGuestCompletion completion) = 0;

  /// `-addCreditCardForGuest:withRequestInfo:completion:`. Replies with the backend's record of the
  /// new card. `requestInfo` may be null.
  virtual void addCreditCardForGuest(
      const std::shared_ptr<HLVSDKGuest>& guest,
      const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
      HLVSDKGuestCardCompletion completion) = 0;

  /// `-deleteCreditCardWithID:fromGuest:completion:`. Replies with the guest as it is afterwards,
  /// its provider user token included.
  virtual void deleteCreditCardWithID(const NullableString& ID,
                                      const std::shared_ptr<HLVSDKGuest>& guest,
                                      HLVSDKGuestCompletion completion) = 0;

  /// `-updateCreditCard:billingAddress:forGuest:completion:`. `address` holds the fields that are
  /// present, under the keys of `HLVSDKCreditCardBusinessAddressJSONKeyes`. `completion` is the
  /// app's own.
  virtual void updateCreditCard(const NullableString& ID, const Dictionary& address,
                                const std::shared_ptr<HLVSDKGuest>& guest,
                                HLVSDKGuestCardCompletion completion) = 0;

  /// `-fetchGuestCreditCards:completion:`. Replies with every card that the backend has.
  virtual void fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                                     HLVSDKCreditCardsCompletion completion) = 0;
};

}  // namespace hlv
