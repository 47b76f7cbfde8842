// The one shape in which errors of the services travel. Private to the server.
//
// Threading: pure functions; any.
#pragma once

#include <exception>
#include <string>

#include "Server/Http/HttpMessages.h"
#include "Values/Error.h"

namespace hlv::server {

/// Keeps domain and number, from which a client makes the same error again.
HttpReply errorReply(const ErrorPtr& error, const std::string& requestID);
/// Of whatever the code of a service throws.
HttpReply errorReply(const std::exception_ptr& problem, const std::string& requestID);

}  // namespace hlv::server
