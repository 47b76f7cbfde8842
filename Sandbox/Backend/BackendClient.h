// The sandbox's client of its backend, and the guests that it returns. Private to the sandbox.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKAPIManager.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Sandbox/Calls/Service.h"
#include "Sandbox/Store/Store.h"
#include "Values/Mutex.h"

namespace hlv::sandbox {

/// Returns what the backend has at that moment.
///
/// Threading: any.
class Guest final : public HLVSDKGuest {
 public:
  Guest(std::string email, std::shared_ptr<Store> store)
      : email_(std::move(email)), store_(std::move(store)) {}

  NullableString email() const override { return email_; }
  NullableString paylevenToken() const override;
  NullableList<HLVSDKCreditCard> creditCards() const override;

 private:
  const std::string email_;
  const std::shared_ptr<Store> store_;
};

/// One object for each guest, for as long as somebody holds it.
///
/// Threading: any.
class Guests {
 public:
  explicit Guests(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  std::shared_ptr<Guest> guest(const std::string& email);
  /// The guest who is signed in; null when nobody is.
  std::shared_ptr<Guest> signedIn();

 private:
  const std::shared_ptr<Store> store_;
  Mutex mutex_;
  std::map<std::string, std::weak_ptr<Guest>> guests_ HLV_GUARDED_BY(mutex_);
};

/// Threading of it and of the client: any.
std::shared_ptr<HLVSDKAPIManager> makeBackendClient(std::shared_ptr<Guests> guests,
                                                    const Service::Surroundings& surroundings);

}  // namespace hlv::sandbox
