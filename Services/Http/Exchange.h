// One request and its answer, apart from how they travel. Private to the services.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Platform/NullableString.h"
#include "Services/Json.h"

namespace hlv::services {

struct HttpRequest {
  std::string method;
  /// The path between its slashes, decoded.
  std::vector<std::string> path;
  std::map<std::string, std::string> query;
  NullableString apiKey;
  NullableString idempotencyKey;
  std::string body;

  NullableString queryValue(const std::string& name) const {
    const auto found = query.find(name);
    return found == query.end() ? std::nullopt : NullableString(found->second);
  }
};

struct HttpAnswer {
  int status = 200;
  /// Null is no content.
  Json body;
};

/// Takes the answer, on any thread and once; later ones are ignored. Where every copy is freed
/// without one, none will come.
using Reply = std::function<void(HttpAnswer)>;

}  // namespace hlv::services
