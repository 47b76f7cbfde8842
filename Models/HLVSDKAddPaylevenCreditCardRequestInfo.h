// The request that registers a card with the backend once the provider has it.
//
// Threading: one thread at a time.
#pragma once

#include <memory>

#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"
#include "Platform/Export.h"
#include "Platform/NullableString.h"

namespace hlv {

/// The host's add-card request, extended by the provider user token.
class HLV_EXPORT HLVSDKAddPaylevenCreditCardRequestInfo : public HLVSDKAddCreditCardRequestInfo {
 public:
  /// `-initWithPaymentInstrument:billingAddress:paylevenToken:`. Null when the host base makes no
  /// object; otherwise marked with the provider value zero. Any argument may be missing.
  [[nodiscard]] static std::shared_ptr<HLVSDKAddPaylevenCreditCardRequestInfo>
  initWithPaymentInstrument(const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
                            const std::shared_ptr<HLVSDKPaymentBillingAddress>& address,
                            NullableString paylevenToken);

  /// `-paylevenToken`, `-setPaylevenToken:`
  NullableString paylevenToken() const;
  void setPaylevenToken(NullableString token);

  /// `-JSONRepresentation`. The host's body with "plv_token" inside "credit_card". A missing token
  /// is left out, and a body without a "credit_card" object stays as the host made it.
  Dictionary JSONRepresentation() const override;

  /// `-isValid:`. False with the host's error, or, when the host is content and the token is
  /// missing or empty, with the invalid-argument error "paylevenToken". `error` may be null.
  [[nodiscard]] bool isValid(ErrorPtr* error) const override;

 protected:
  /// `body` is not null.
  explicit HLVSDKAddPaylevenCreditCardRequestInfo(std::shared_ptr<Body> body);

 private:
  NullableString paylevenToken_;
};

}  // namespace hlv
