// Where a card's bills go.
#pragma once

#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Object.h"

namespace hlv {

/// Any field may be missing. Implementations must take calls from any thread.
class HLV_EXPORT HLVSDKPaymentBillingAddress : public Object {
 public:
  virtual NullableString countryCode() const = 0;
  virtual NullableString street() const = 0;
  virtual NullableString city() const = 0;
  virtual NullableString zip() const = 0;
  virtual NullableString businessName() const = 0;
};

}  // namespace hlv
