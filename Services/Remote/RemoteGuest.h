// A guest whom a backend elsewhere keeps. Private to the services.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Services/BackendRecords.h"

namespace hlv::services {

/// Answers the latest that the backend told of the guest. Answers to requests that were made at the
/// same time may arrive in another order than that in which they were given.
///
/// Threading: any.
class RemoteGuest final : public HLVSDKGuest {
 public:
  explicit RemoteGuest(const std::string& email) { record_.email = email; }

  NullableString email() const override { return record().email; }
  NullableString paylevenToken() const override { return record().paymentToken; }
  NullableList<HLVSDKCreditCard> creditCards() const override { return objectsOf(record().cards); }

  void learn(GuestRecord record) {
    const std::lock_guard lock(mutex_);
    if (record.revision >= record_.revision) record_ = std::move(record);
  }
  /// Whatever is told next counts as the latest.
  void forgetRevision() {
    const std::lock_guard lock(mutex_);
    record_.revision = 0;
  }
  GuestRecord record() const {
    const std::lock_guard lock(mutex_);
    return record_;
  }

 private:
  mutable std::mutex mutex_;
  GuestRecord record_;
};

/// One object for each guest.
///
/// Threading: any.
class RemoteGuests {
 public:
  std::shared_ptr<RemoteGuest> guest(const std::string& email) {
    const std::lock_guard lock(mutex_);
    auto& guest = guests_[email];
    if (!guest) guest = std::make_shared<RemoteGuest>(email);
    return guest;
  }

  /// Answers the guest, who knows at least as much as `record` now.
  std::shared_ptr<RemoteGuest> learn(GuestRecord record) {
    auto known = guest(record.email);
    known->learn(std::move(record));
    return known;
  }

 private:
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<RemoteGuest>> guests_;
};

}  // namespace hlv::services
