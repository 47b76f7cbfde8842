// Which request goes to which function.
#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Server/Http/HttpError.h"
#include "Server/Http/HttpMessages.h"

namespace hlv::server {

/// Threading: any, once it is filled.
template <class Handler>
class Routes {
 public:
  /// `path` as in "v1/guests/*/cards", where "*" stands for any one part that is not empty. A part
  /// that is spelled out goes before "*".
  void add(const std::string& method, std::string_view path, Handler handler) {
    auto* node = &root_;
    while (!path.empty()) {
      const auto part = path.substr(0, path.find('/'));
      path.remove_prefix(std::min(path.size(), part.size() + 1));
      auto& next = node->parts[std::string(part)];
      if (!next) next = std::make_unique<Node>();
      node = next.get();
    }
    node->methods[method] = std::move(handler);
  }

  /// Throws `HttpError` where no route leads. The first `skipped` parts of the request's path are
  /// no part of the routes.
  const Handler& find(const HttpRequest& request, std::size_t skipped = 0) const {
    const auto* node = find(root_, request.path, skipped);
    if (!node) throw HttpError(404, "no-such-resource", "There is nothing at this path.");
    if (const auto found = node->methods.find(request.method); found != node->methods.end()) {
      return found->second;
    }
    HttpError error(405, "method-not-allowed", "This cannot be done at this path.");
    std::string allowed;
    for (const auto& [method, handler] : node->methods) {
      allowed.append(allowed.empty() ? "" : ", ").append(method);
    }
    error.headers.emplace_back("Allow", allowed);
    throw error;
  }

 private:
  struct Node {
    std::map<std::string, std::unique_ptr<Node>, std::less<>> parts;
    std::map<std::string, Handler, std::less<>> methods;
  };

  static const Node* find(const Node& node, const std::vector<std::string>& path, std::size_t at) {
    if (at >= path.size()) return node.methods.empty() ? nullptr : &node;
    if (path[at].empty()) return nullptr;
    for (const std::string_view part : {std::string_view(path[at]), std::string_view("*")}) {
      const auto next = node.parts.find(part);
      if (next == node.parts.end()) continue;
      if (const auto* found = find(*next->second, path, at + 1)) return found;
    }
    return nullptr;
  }

  Node root_;
};

}  // namespace hlv::server
