// What the backend keeps, in JSON; both ends of a connection read and write it here. Private to the
// services.
//
// Threading: pure functions; any.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Host/HLVSDKCoreKit/HLVSDKCreditCard.h"
#include "Host/HLVSDKCoreKit/HLVSDKGuest.h"
#include "Platform/List.h"
#include "Sandbox/Backend/StoredCard.h"
#include "Sandbox/BackendCard.h"
#include "Services/Json.h"

namespace hlv::services {

struct GuestRecord {
  std::string email;
  /// Of two answers, the one with the higher revision is the later truth.
  std::int64_t revision = 0;
  NullableString paymentToken;
  std::vector<sandbox::BackendCard> cards;
};

Json jsonOf(const std::shared_ptr<HLVSDKGuest>& guest);
Json jsonOf(const std::shared_ptr<HLVSDKCreditCard>& card);
/// A missing list becomes null.
Json jsonOf(const NullableList<HLVSDKCreditCard>& cards);

// These throw `Json::exception` for what is no such record.

GuestRecord guestIn(const Json& json);
sandbox::BackendCard cardIn(const Json& json);
List<HLVSDKCreditCard> objectsOf(const std::vector<sandbox::BackendCard>& cards);
NullableList<HLVSDKCreditCard> cardsIn(const Json& json);

}  // namespace hlv::services
