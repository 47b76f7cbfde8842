// Asks the backend to change the current guest.
#pragma once

#include <memory>

#include "Host/Host.h"
#include "Platform/Export.h"
#include "Platform/NullableString.h"
#include "Platform/Object.h"

namespace hlv {

/// Used on one thread at a time.
class HLV_EXPORT HLVSDKUpdateGuestRequestInfo : public Object {
 public:
  /// `+new`
  [[nodiscard]] static std::shared_ptr<HLVSDKUpdateGuestRequestInfo> make() {
    return Host::ask(&Host::makeUpdateGuestRequestInfo);
  }

  /// `-setPaymentToken:`. The provider user token to store on the guest.
  virtual void setPaymentToken(const NullableString& token) = 0;
};

}  // namespace hlv
