// The documents that describe the two services. Private to the services.
//
// Threading: constant data; any.
#pragma once

#include <string_view>

namespace hlv::services {

/// OpenAPI 3, from the files in `Services/openapi/`.
std::string_view backendOpenAPI();
std::string_view providerOpenAPI();

}  // namespace hlv::services
