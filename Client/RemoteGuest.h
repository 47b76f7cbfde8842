// A guest whom a backend elsewhere keeps, and this side's session with it. Private to this folder.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Sandbox/Backend/StoredCard.h"
#include "Sandbox/JSON/CardRecords.h"
#include "Sandbox/Sandbox.h"
#include "Values/List.h"
#include "Values/Mutex.h"

namespace hlv::client {

/// Returns the latest that the backend has sent about the guest. Replies to requests that were made
/// at the same time may arrive in another order than that in which the backend made them.
///
/// Threading: any.
class RemoteGuest final : public HLVSDKGuest {
 public:
  explicit RemoteGuest(const std::string& email) : record_{email, 0, std::nullopt, {{}}} {}

  NullableString email() const override { return record().email; }
  NullableString paylevenToken() const override { return record().paymentToken; }
  NullableList<HLVSDKCreditCard> creditCards() const override { return objectsOf(*record().cards); }

  /// A record without cards leaves those that are known.
  void learn(sandbox::BackendGuest record) {
    const Lock lock(mutex_);
    if (record.revision < record_.revision) return;
    if (!record.cards) record.cards = std::move(record_.cards);
    record_ = std::move(record);
  }
  /// Whatever comes next counts as the latest.
  void forgetRevision() {
    const Lock lock(mutex_);
    record_.revision = 0;
  }
  sandbox::BackendGuest record() const {
    const Lock lock(mutex_);
    return record_;
  }

 private:
  mutable Mutex mutex_;
  /// Never without cards.
  sandbox::BackendGuest record_ HLV_GUARDED_BY(mutex_);
};

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

/// One object for each guest.
///
/// Threading: any.
class RemoteGuests {
 public:
  std::shared_ptr<RemoteGuest> guest(const std::string& email) {
    const Lock lock(mutex_);
    auto& guest = guests_[email];
    if (!guest) guest = std::make_shared<RemoteGuest>(email);
    return guest;
  }

  /// Returns the guest, who knows at least as much as `record` now.
  std::shared_ptr<RemoteGuest> learn(sandbox::BackendGuest record) {
    auto known = guest(record.email);
    known->learn(std::move(record));
    return known;
  }

 private:
  Mutex mutex_;
  std::map<std::string, std::shared_ptr<RemoteGuest>> guests_ HLV_GUARDED_BY(mutex_);
};

}  // namespace hlv::client
