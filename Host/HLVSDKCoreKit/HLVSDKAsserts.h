// Reports of programming errors.
#pragma once

#include "Host/Host.h"
#include "Values/Export.h"
#include "Values/NullableString.h"

namespace hlv {

/// Every operation reports and returns; none stops the program. Any thread.
class HLV_EXPORT HLVSDKAsserts {
 public:
  /// `+handleAssertWithMessage:`
  static void handleAssertWithMessage(const NullableString& message) {
    Host::ask(&Host::handleAssertWithMessage, message);
  }

  /// `+handleParameterAssert:withMessage:`. `message` may be missing.
  static void handleParameterAssert(const NullableString& parameter,
                                    const NullableString& message) {
    Host::ask(&Host::handleParameterAssert, parameter, message);
  }
};

}  // namespace hlv
