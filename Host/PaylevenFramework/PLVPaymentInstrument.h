// Card instruments of the payment provider.
#pragma once

#include <cstdint>
#include <memory>

#include "Host/Host.h"
#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Object.h"

namespace hlv {

/// A means of payment at the provider.
class HLV_EXPORT PLVPaymentInstrument : public Object {
 public:
  /// `+createCreditCardPaymentInstrumentWithPan:expiryMonth:expiryYear:cvv:andCardHolder:`.
  /// Synchronous; any thread. Any argument may be missing, and the result may be null.
  static std::shared_ptr<PLVCreditCardPaymentInstrument> createCreditCardPaymentInstrumentWithPan(
      const NullableString& pan, const NullableString& expiryMonth,
      const NullableString& expiryYear, const NullableString& cvv,
      const NullableString& cardHolder) {
    return Host::ask(&Host::makeCreditCardPaymentInstrument, pan, expiryMonth, expiryYear, cvv,
                     cardHolder);
  }
};

/// A card instrument: made from an entered card, or listed by the provider. Implementations must
/// take calls from any thread.
class HLV_EXPORT PLVCreditCardPaymentInstrument : public PLVPaymentInstrument {
 public:
  /// The provider's identifier of a stored instrument.
  virtual NullableString identifier() const = 0;
  /// The number as the provider keeps it; it ends with the card's last four digits.
  virtual NullableString pan() const = 0;
  virtual NullableString cardBrand() const = 0;
  virtual NullableString expiryMonth() const = 0;
  virtual NullableString expiryYear() const = 0;
  /// 0 is the only state in which the kit uses an instrument.
  virtual std::uint64_t state() const = 0;
};

}  // namespace hlv
