// The request log as other tools read it. Private to the server.
//
// Threading: pure function; any.
#pragma once

#include <string>

#include "Sandbox/JSON/Json.h"

namespace hlv::server {

/// HAR 1.2 of requests as the log returns them, without bodies and headers, which nobody keeps.
sandbox::Json harOf(const sandbox::Json& requests, const std::string& host);

}  // namespace hlv::server
