// Which request goes to which function.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Server/Http/HttpError.h"
#include "Server/Http/HttpMessages.h"

namespace hlv::sandbox::server {

/// Threading: any, once it is filled.
template <class Handler>
class Routes {
 public:
  /// `path` as in "v1/guests/*/cards", where "*" stands for any one part that is not empty. A part
  /// that is spelled out goes before "*".
  void add(const std::string& method, std::string_view path, Handler handler) {
    std::vector<std::string> parts;
    while (!path.empty()) {
      parts.emplace_back(path.substr(0, path.find('/')));
      path.remove_prefix(std::min(path.size(), parts.back().size() + 1));
    }
    routes_[std::move(parts)][method] = std::move(handler);
  }

  /// Throws `HttpError` where no route leads. The first `skipped` parts of the request's path are
  /// no part of the routes.
  const Handler& find(const HttpRequest& request, std::size_t skipped = 0) const {
    const auto path = std::span(request.path).subspan(std::min(skipped, request.path.size()));
    for (const auto& [parts, methods] : routes_) {
      if (std::equal(path.begin(), path.end(), parts.begin(), parts.end(), isPart)) {
        return methodOf(methods, request.method);
      }
    }
    throw HttpError(404, "no-such-resource", "There is nothing at this path.");
  }

 private:
  using Methods = std::map<std::string, Handler, std::less<>>;

  static bool isPart(const std::string& given, const std::string& wanted) {
    return given == wanted || (wanted == "*" && !given.empty());
  }

  static const Handler& methodOf(const Methods& methods, const std::string& method) {
    if (const auto found = methods.find(method); found != methods.end()) return found->second;
    HttpError error(405, "method-not-allowed", "This cannot be done at this path.");
    std::string allowed;
    for (const auto& [name, handler] : methods) {
      allowed.append(allowed.empty() ? "" : ", ").append(name);
    }
    error.headers.emplace_back("Allow", allowed);
    throw error;
  }

  // "*" sorts before whatever is spelled out, and so comes last.
  std::map<std::vector<std::string>, Methods, std::greater<>> routes_;
};

}  // namespace hlv::sandbox::server
