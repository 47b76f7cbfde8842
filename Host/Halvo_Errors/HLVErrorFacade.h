// The one maker of the host's errors.
#pragma once

#include <cstdint>
#include <memory>

#include "Host/Host.h"
#include "Values/Error.h"
#include "Values/Export.h"
#include "Values/NullableString.h"
#include "Values/Object.h"

namespace hlv {

/// Made anew for every error. Implementations must
/// - take calls from any thread and never return null;
/// - copy the byte strings they are given;
/// - mask card numbers to their last four digits in every text they make.
class HLV_EXPORT HLVErrorFacade : public Object {
 public:
  /// `+new`
  [[nodiscard]] static std::shared_ptr<HLVErrorFacade> make() {
    return Host::ask(&Host::makeErrorFacade);
  }

  /// `-errorWithCode:domain:message:`. `message` may be missing.
  virtual ErrorPtr errorWithCode(std::int64_t code, const NullableString& domain,
                                 const NullableString& message) = 0;

  /// `-invalidArgumentErrorWithName:value:message:`. `value` and `message` may be missing.
  virtual ErrorPtr invalidArgumentErrorWithName(const NullableString& name,
                                                const NullableString& value,
                                                const NullableString& message) = 0;

  /// `-requiredArgumentErrorWithName:message:functionName:fileName:`. `message` may be missing;
  /// `functionName` and `fileName` name the function and the source file that build the error.
  virtual ErrorPtr requiredArgumentErrorWithName(const NullableString& name,
                                                 const NullableString& message,
                                                 const char* functionName,
                                                 const char* fileName) = 0;

  /// `-paymentProviderErrorWithError:`. Wraps an error of the payment provider and gives it a
  /// developer message.
  virtual ErrorPtr paymentProviderErrorWithError(const ErrorPtr& error) = 0;
};

}  // namespace hlv
