// A card as the user typed it.
#pragma once

#include "Values/Error.h"
#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Object.h"

namespace hlv {

/// Implementations must
/// - take calls from any thread; the kit reads the card before and after the provider has it;
/// - keep `pan` and `cvv` out of every error that `isValid` makes.
class HLV_EXPORT HLVSDKPaymentInstrument : public Object {
 public:
  /// The card number, digits only.
  virtual NullableString pan() const = 0;
  /// Month and year as the provider spells them in its lists; the kit compares the texts.
  virtual NullableString expiryMonth() const = 0;
  virtual NullableString expiryYear() const = 0;
  virtual NullableString cvv() const = 0;
  virtual NullableString cardHolder() const = 0;
  /// The card's use case as the provider takes it.
  virtual NullableString instrumentUseCaseString() const = 0;

  /// `-isValid:`. The card checks itself. `error` may be null, and may be left alone when the
  /// result is false.
  [[nodiscard]] virtual bool isValid(ErrorPtr* error) const = 0;

  /// `-setExternalIdentifier:`. Receives the identifier of the provider's instrument.
  virtual void setExternalIdentifier(const NullableString& identifier) = 0;
};

}  // namespace hlv
