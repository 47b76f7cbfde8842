// A card as the backend keeps it.
#pragma once

#include "Host/Host.h"
#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Object.h"

namespace hlv {

/// Implementations must take calls from any thread.
class HLV_EXPORT HLVSDKCreditCard : public Object {
 public:
  /// `+cardBrandFromNumber:`. The brand of a card number, spelled as the provider spells
  /// `cardBrand`; missing for an unknown one.
  static NullableString cardBrandFromNumber(const NullableString& number) {
    return Host::ask(&Host::cardBrandFromNumber, number);
  }

  /// The backend's identifier of the card.
  virtual NullableString halvoID() const = 0;
  virtual NullableString lastFourDigits() const = 0;
  virtual NullableString brand() const = 0;
  virtual NullableString useCase() const = 0;
  /// The identifier of the provider's instrument; missing for a card that is not tied to one.
  virtual NullableString externalIdentifier() const = 0;
};

}  // namespace hlv
