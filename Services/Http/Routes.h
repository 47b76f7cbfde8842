// Which request goes where. Private to the services.
#pragma once

#include <string>
#include <vector>

#include "Services/Http/Exchange.h"

namespace hlv::services {

/// Threading: any, once it is filled.
class Routes {
 public:
  using Handler = std::function<void(const HttpRequest&, const Reply&)>;

  /// In `path`, "*" stands for any one part.
  void add(const std::string& method, std::vector<std::string> path, Handler handler);
  /// Throws `Refused` where no route leads, and what the handler throws.
  void serve(const HttpRequest& request, const Reply& reply) const;

 private:
  struct Route {
    std::string method;
    std::vector<std::string> path;
    Handler handler;
  };
  std::vector<Route> routes_;
};

}  // namespace hlv::services
