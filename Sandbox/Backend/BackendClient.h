// The sandbox's client of its backend. Private to the sandbox.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Sandbox/Backend/Guest.h"
#include "Sandbox/Calls/Service.h"

namespace hlv::sandbox {

/// Reads requests and guests on the caller's thread, and completes on the backend's.
///
/// Threading: any.
class BackendClient final : public HLVSDKAPIManager {
 public:
  BackendClient(std::shared_ptr<Guests> guests, const Service::Surroundings& surroundings);

  void updateCurrentGuestWithRequest(const std::shared_ptr<HLVSDKUpdateGuestRequestInfo>& request,
                                     HLVSDKGuestCompletion completion) override;
  void addCreditCardForGuest(const std::shared_ptr<HLVSDKGuest>& guest,
                             const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& requestInfo,
                             HLVSDKGuestCardCompletion completion) override;
  void deleteCreditCardWithID(const NullableString& ID, const std::shared_ptr<HLVSDKGuest>& guest,
                              HLVSDKGuestCompletion completion) override;
  void updateCreditCard(const NullableString& ID, const Dictionary& address,
                        const std::shared_ptr<HLVSDKGuest>& guest,
                        HLVSDKGuestCardCompletion completion) override;
  void fetchGuestCreditCards(const std::shared_ptr<HLVSDKGuest>& guest,
                             HLVSDKCreditCardsCompletion completion) override;

 private:
  const std::shared_ptr<Guests> guests_;
  const Service service_;
};

}  // namespace hlv::sandbox
