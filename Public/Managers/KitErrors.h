// The errors that the managers report, each made by a facade of its own.
//
// Threading: any. Null while no host is installed.
#pragma once

#include "Public/Managers/CallSite.h"
#include "Values/Error.h"
#include "Values/NullableString.h"

namespace hlv {

/// A step was called without something it needs. `builder` names the function and the source file
/// that build the error; `message` may be missing.
ErrorPtr requiredArgumentError(const char* name, const NullableString& message,
                               const CallSite& builder);

/// The provider stored a card without saying under which identifier.
ErrorPtr missingIdentifierError(const CallSite& builder);

/// Wraps an error of the payment provider.
ErrorPtr paymentProviderError(const ErrorPtr& error);

/// No connection is available.
ErrorPtr noConnectionError();

}  // namespace hlv
