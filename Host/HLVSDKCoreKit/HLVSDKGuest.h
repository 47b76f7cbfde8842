// The signed-in user.
#pragma once

#include <memory>

#include "Host/Host.h"
#include "Values/Export.h"
#include "Values/List.h"
#include "Values/NullableString.h"
#include "Values/Object.h"

namespace hlv {

class HLVSDKCreditCard;

/// Implementations must
/// - return, on any thread, what the guest has at that moment;
/// - be the same object for as long as the same guest is signed in, and carry what the backend
///   stored: the kit reads the current guest once and keeps that object.
class HLV_EXPORT HLVSDKGuest : public Object {
 public:
  /// `+currentGuest`. The signed-in guest, or null.
  static std::shared_ptr<HLVSDKGuest> currentGuest() { return Host::ask(&Host::currentGuest); }

  virtual NullableString email() const = 0;
  /// The provider user token; missing or empty when the guest has none.
  virtual NullableString paylevenToken() const = 0;
  /// The guest's cards, in the backend's order; may be missing.
  virtual NullableList<HLVSDKCreditCard> creditCards() const = 0;
};

}  // namespace hlv
