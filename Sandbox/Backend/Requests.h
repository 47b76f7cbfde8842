// What the host writes into its requests. Private to the sandbox, server and client.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "Host/HLVSDKCoreKit/HLVSDKPaymentBillingAddress.h"
#include "Host/HLVSDKCoreKit/HLVSDKPaymentInstrument.h"
#include "Host/HLVSDKCoreKit/HLVSDKUpdateGuestRequestInfo.h"
#include "Host/HLVSDKPaymentKit/HLVSDKAddCreditCardRequestInfo.h"

namespace hlv::sandbox {

/// To change the current guest.
///
/// Threading: one thread at a time.
class UpdateGuestRequest final : public HLVSDKUpdateGuestRequestInfo {
 public:
  void setPaymentToken(const NullableString& token) override { paymentToken_ = token; }
  NullableString paymentToken() const { return paymentToken_; }

 private:
  NullableString paymentToken_;
};

/// To register a card.
/// Speaks for an `EnteredCard`: of other cards the external identifier cannot be read, so they are
/// refused.
///
/// Threading: one thread at a time.
class AddCardBody final : public HLVSDKAddCreditCardRequestBody {
 public:
  AddCardBody(std::shared_ptr<HLVSDKPaymentInstrument> card,
              std::shared_ptr<HLVSDKPaymentBillingAddress> address)
      : card_(std::move(card)), address_(std::move(address)) {}

  void setProvider(std::int64_t provider) override { provider_ = provider; }
  Dictionary JSONRepresentation() const override;
  bool isValid(ErrorPtr* error) const override;

 private:
  const std::shared_ptr<HLVSDKPaymentInstrument> card_;
  const std::shared_ptr<HLVSDKPaymentBillingAddress> address_;
  std::int64_t provider_ = 0;
};

/// A request as it is when it is handed over: its body, or why it cannot be sent.
struct AddCardRequest {
  explicit AddCardRequest(const std::shared_ptr<HLVSDKAddCreditCardRequestInfo>& request);
  NullableString useCase() const;

  Dictionary body;
  ErrorPtr problem;
};

}  // namespace hlv::sandbox
