// The documents that describe the server. Private to the server.
//
// Threading: constant data; any.
#pragma once

#include <string_view>

namespace hlv::server {

/// OpenAPI 3.1 of "backend", "provider", "control" or "sandboxes": one document that refers to no
/// other. The files in `Server/openapi/` leave out what the server adds:
/// - a text in the place of a schema, a parameter, a header, a response or a request body names one
///   in components.json;
/// - a list in the place of a schema is that of an array, with the schema of its items;
/// - "members" are the properties of an object that are required, "only" the same where it has no
///   others but its "properties";
/// - a parameter in the path, and a request body that does not say otherwise, is required;
/// - the tags of a path are those of its operations;
/// - the schema and the example of a response or a request body are of its JSON;
/// - every operation has the responses `Rejected` and `Failed`.
std::string_view openAPI(std::string_view name);

}  // namespace hlv::server
