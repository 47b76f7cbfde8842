// The host's error domains that the kit uses.
//
// Threading: any.
#pragma once

#include "Values/Export.h"
#include "Values/NullableString.h"

namespace hlv {

/// Code 1 in it: no connection is available.
HLV_EXPORT NullableString HLVURLErrorDomain();
/// Code 5 in it: the payment instrument information is invalid.
HLV_EXPORT NullableString HLVPaymentErrorDomain();

}  // namespace hlv
