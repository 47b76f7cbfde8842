// The host's client of a backend in another process. Private to this folder.
#pragma once

#include <memory>

#include "Client/RemoteGuest.h"
#include "Client/RemoteService.h"
#include "Client/RemoteSession.h"
#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"

namespace hlv::client {

/// Reads requests and guests on the caller's thread.
///
/// Threading: any.
class RemoteBackend final : public HLVSDKAPIManager {
 public:
  /// `local` knows who is signed in on this side.
  RemoteBackend(RemoteService service, std::shared_ptr<sandbox::Sandbox> local,
                std::shared_ptr<const RemoteSession> session, std::shared_ptr<RemoteGuests> guests)
      : service_(std::move(service)),
        local_(std::move(local)),
        session_(std::move(session)),
        guests_(std::move(guests)) {}

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
  /// Adds the session of the moment at which the request is made.
  RemoteService::RequestMaker inSession(RemoteService::RequestMaker make) const;

  const RemoteService service_;
  const std::shared_ptr<sandbox::Sandbox> local_;
  const std::shared_ptr<const RemoteSession> session_;
  const std::shared_ptr<RemoteGuests> guests_;
};

}  // namespace hlv::client
