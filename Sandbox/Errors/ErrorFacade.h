// The sandbox's error facade.
#pragma once

#include <cstdint>

#include "Host/Halvo_Errors/HLVErrorFacade.h"

namespace hlv::sandbox {

/// Keeps an argument's value out of every text: it may be what nobody should read.
///
/// Threading: any.
class ErrorFacade final : public HLVErrorFacade {
 public:
  ErrorPtr errorWithCode(std::int64_t code, const NullableString& domain,
                         const NullableString& message) override;
  ErrorPtr invalidArgumentErrorWithName(const NullableString& name, const NullableString& value,
                                        const NullableString& message) override;
  ErrorPtr requiredArgumentErrorWithName(const NullableString& name, const NullableString& message,
                                         const char* functionName, const char* fileName) override;
  ErrorPtr paymentProviderErrorWithError(const ErrorPtr& error) override;
};

}  // namespace hlv::sandbox
