// The host's request to register a card, as a base class for the kits' requests.
#pragma once

#include <cstdint>
#include <memory>

#include "Values/Error.h"
#include "Values/Export.h"
#include "Values/Object.h"
#include "Values/Value.h"

namespace hlv {

class HLVSDKPaymentBillingAddress;
class HLVSDKPaymentInstrument;

/// The host's part of one request. Implementations must
/// - write a dictionary under "credit_card", without the card's number or security code;
/// - accept the provider value 0.
class HLV_EXPORT HLVSDKAddCreditCardRequestBody : public Object {
 public:
  virtual void setProvider(std::int64_t provider) = 0;
  virtual Dictionary JSONRepresentation() const = 0;
  /// `error` may be null.
  [[nodiscard]] virtual bool isValid(ErrorPtr* error) const = 0;
};

/// Kits derive from this class; what it writes and checks is the installed host's, through `Body`.
///
/// Threading: one thread at a time.
class HLV_EXPORT HLVSDKAddCreditCardRequestInfo : public Object {
 public:
  using Body = HLVSDKAddCreditCardRequestBody;

  /// `-initWithPaymentInstrument:billingAddress:`. Null when the host makes no body.
  [[nodiscard]] static std::shared_ptr<HLVSDKAddCreditCardRequestInfo> initWithPaymentInstrument(
      const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address);

  /// `-setProvider:`
  virtual void setProvider(std::int64_t provider);
  /// `-JSONRepresentation`. A body of its own; later changes of the request do not reach it.
  virtual Dictionary JSONRepresentation() const;
  /// `-isValid:`. `error` may be null; it is set only when the result is false.
  [[nodiscard]] virtual bool isValid(ErrorPtr* error) const;

  /// The host's part, for hosts that know their own. Never null.
  const std::shared_ptr<Body>& body() const { return body_; }

 protected:
  /// The base initialiser's first half: the host's part, or null.
  static std::shared_ptr<Body> makeBody(
      const std::shared_ptr<HLVSDKPaymentInstrument>& instrument,
      const std::shared_ptr<HLVSDKPaymentBillingAddress>& address);
  /// `body` is not null.
  explicit HLVSDKAddCreditCardRequestInfo(std::shared_ptr<Body> body);

 private:
  const std::shared_ptr<Body> body_;
};

}  // namespace hlv
