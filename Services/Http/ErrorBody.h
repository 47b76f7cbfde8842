// The one shape in which both services tell what went wrong. Private to the services.
//
// Threading: pure functions; any.
#pragma once

#include "Platform/Error.h"
#include "Services/Http/Exchange.h"
#include "Services/Http/Refused.h"

namespace hlv::services {

/// The domain of what a service refuses before the sandbox hears of it. The number is the status.
inline constexpr const char* requestErrorDomain = "HLVServiceRequestErrorDomain";

/// Keeps domain and number, from which a client makes the same error again.
HttpAnswer errorAnswer(const ErrorPtr& error);
HttpAnswer errorAnswer(const Refused& refused);
/// What a status says by itself; one that says nothing here is that of a malformed request.
HttpAnswer errorAnswer(int status);

/// The error in an answer's body; null when there is none to read.
ErrorPtr errorIn(const Json& body);

}  // namespace hlv::services
