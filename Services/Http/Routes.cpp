#include "Services/Http/Routes.h"

#include <algorithm>
#include <utility>

#include "Services/Http/Refused.h"

namespace hlv::services {

void Routes::add(const std::string& method, std::vector<std::string> path, Handler handler) {
  routes_.push_back({method, std::move(path), std::move(handler)});
}

void Routes::serve(const HttpRequest& request, const Reply& reply) const {
  bool isKnownPath = false;
  for (const auto& route : routes_) {
    const auto fits = [](const std::string& expected, const std::string& part) {
      return expected == part || (expected == "*" && !part.empty());
    };
    if (!std::equal(route.path.begin(), route.path.end(), request.path.begin(), request.path.end(),
                    fits)) {
      continue;
    }
    isKnownPath = true;
    if (route.method == request.method) return route.handler(request, reply);
  }
  if (isKnownPath) throw Refused{405, "method-not-allowed", "This cannot be done at this path."};
  throw Refused{404, "no-such-resource", "There is nothing at this path."};
}

}  // namespace hlv::services
