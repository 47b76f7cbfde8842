// The sandbox's request to change the current guest. Private to the sandbox, server and client.
#pragma once

#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"

namespace hlv::sandbox {

/// Threading: one thread at a time.
class UpdateGuestRequest final : public HLVSDKUpdateGuestRequestInfo {
 public:
  void setPaymentToken(const NullableString& token) override { paymentToken_ = token; }
  NullableString paymentToken() const { return paymentToken_; }

 private:
  NullableString paymentToken_;
};

}  // namespace hlv::sandbox
