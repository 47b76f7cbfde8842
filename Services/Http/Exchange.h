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
  /// Under which name the service was called.
  std::string host;
  std::string body;

  NullableString queryValue(const std::string& name) const {
    const auto found = query.find(name);
    return found == query.end() ? std::nullopt : NullableString(found->second);
  }
};

/// What befalls an answer on its way out.
enum class Mishap {
  none,
  /// The connection is reset before a byte of it.
  refused,
  /// Half of it, and then the connection is reset.
  reset,
  /// Something else in its place.
  garbage,
  /// It comes a second time.
  twice
};

/// Asked again and again for what is new to be sent; empty is nothing.
using EventStream = std::function<std::string()>;

struct HttpAnswer {
  int status = 200;
  /// Null is no content, or content of another kind.
  Json body;
  Mishap mishap = Mishap::none;
  /// Content that is no JSON, and its type.
  std::string content = {};
  std::string contentType = {};
  /// Content that goes on until the other side has gone.
  EventStream events = {};
};

/// Takes the answer, on any thread and once; later ones are ignored. Where every copy is freed
/// without one, none will come.
using Reply = std::function<void(HttpAnswer)>;

}  // namespace hlv::services
