// The host's client of a backend in another process. Private to this folder.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "Client/RemoteGuest.h"
#include "Client/RemoteService.h"
#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"

namespace hlv::client {

/// The session of this side with a backend. Kept in the local sandbox, one for each backend, so
/// that it outlives the process.
///
/// Threading: any.
class RemoteSession {
 public:
  RemoteSession(std::shared_ptr<sandbox::Sandbox> local, const std::string& backendURL)
      : local_(std::move(local)), note_("session at " + backendURL) {}

  /// Missing when there is none; requests then go without.
  NullableString token() const {
    auto token = local_->note(note_);
    return length(token) > 0 ? token : std::nullopt;
  }
  /// Returns the token that was kept before.
  NullableString exchange(const NullableString& token) {
    auto before = this->token();
    if (before != token) local_->setNote(note_, token.value_or(""));
    return before;
  }

 private:
  const std::shared_ptr<sandbox::Sandbox> local_;
  const std::string note_;
};

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
