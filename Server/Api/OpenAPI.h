// The documents that describe the server. Private to the server.
//
// Threading: constant data; any.
#pragma once

#include <string_view>

namespace hlv::server {

/// OpenAPI 3, from the files in `Server/openapi/`.
std::string_view backendOpenAPI();
std::string_view providerOpenAPI();
std::string_view controlOpenAPI();
std::string_view sandboxesOpenAPI();

}  // namespace hlv::server
