// The documents that describe the two services. Private to the services.
//
// Threading: constant data; any.
#pragma once

#include <string>

namespace hlv::services {

/// OpenAPI 3, from the files in `Services/openapi/`.
const std::string& backendOpenAPI();
const std::string& providerOpenAPI();

}  // namespace hlv::services
