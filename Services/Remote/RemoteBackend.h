// The host's client of a backend in another process. Private to the services.
#pragma once

#include <memory>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Services/Remote/RemoteGuest.h"
#include "Services/Remote/RemoteService.h"

namespace hlv::services {

/// Reads requests and guests on the caller's thread.
///
/// Threading: any.
class RemoteBackend final : public HLVSDKAPIManager {
 public:
  /// `local` says who is signed in.
  RemoteBackend(RemoteService service, std::shared_ptr<sandbox::Sandbox> local,
                std::shared_ptr<RemoteGuests> guests)
      : service_(std::move(service)), local_(std::move(local)), guests_(std::move(guests)) {}

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
  const RemoteService service_;
  const std::shared_ptr<sandbox::Sandbox> local_;
  const std::shared_ptr<RemoteGuests> guests_;
};

}  // namespace hlv::services
