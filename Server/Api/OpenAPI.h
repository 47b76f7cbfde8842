// The documents that describe the server. Private to the server.
//
// Threading: constant data; any.
#pragma once

#include <string_view>

namespace hlv::server {

/// OpenAPI 3.1 of "backend", "provider", "control" or "sandboxes", from the files in
/// `Server/openapi/`: one document that refers to no other.
std::string_view openAPI(std::string_view name);

}  // namespace hlv::server
